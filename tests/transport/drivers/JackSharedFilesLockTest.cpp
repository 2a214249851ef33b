#include "transport/drivers/jack/JackSharedFilesLock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <optional>
#include <thread>

namespace tarvix {
namespace {

// Each holder is a lock of its own, as another process's would be: the
// second open waits for the first to end, then goes ahead.
TEST(JackSharedFilesLockTest, ASecondHolderWaitsUntilTheFirstIsDone)
{
    std::optional<CJackSharedFilesLock> first(std::in_place);
    std::atomic<bool> secondHeld{false};
    std::promise<void> release;
    auto second = std::async(std::launch::async, [&] {
        const CJackSharedFilesLock lock;
        secondHeld = true;
        release.get_future().wait();
    });

    // However long it is given, the second must not get in while the first
    // holds the lock.
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_FALSE(secondHeld);

    first.reset();
    release.set_value();
    second.get();
    EXPECT_TRUE(secondHeld);
}

} // namespace
} // namespace tarvix
