#include "transport/drivers/MidiCallbackQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

namespace tarvix {
namespace {

// Close and Reset promise their callbacks before they return, and the
// caller then frees the instance: a Deliver that finds the driver's thread
// delivering must not leave its calls to run later.
TEST(MidiCallbackQueueTest, DeliverReturnsOnlyOnceItsCallsRanWhileAnotherThreadDelivers)
{
    CMidiCallbackQueue queue;
    std::promise<void> entered;
    std::promise<void> release;
    std::shared_future<void> released = release.get_future().share();
    queue.Post([&entered, released] {
        entered.set_value();
        released.wait();
    });
    std::thread driverThread([&queue] { queue.Deliver(); });
    entered.get_future().wait(); // the driver's thread is delivering now

    std::atomic<bool> ran{false};
    std::atomic<bool> delivering{false};
    bool ranWhenReturned = false;
    queue.Post([&ran] { ran = true; });
    std::thread closer([&] {
        delivering = true;
        queue.Deliver();
        ranWhenReturned = ran;
    });
    while (!delivering) {
        std::this_thread::yield();
    }
    release.set_value();
    closer.join();
    driverThread.join();

    EXPECT_TRUE(ranWhenReturned);
}

TEST(MidiCallbackQueueTest, ACallbackThatCallsBackIntoTheDriverIsNotKeptWaiting)
{
    CMidiCallbackQueue queue;
    int order = 0;
    int first = 0;
    int second = 0;
    queue.Post([&] {
        first = ++order;
        queue.Post([&] { second = ++order; });
        queue.Deliver(); // as AddBuffer from within a callback does
    });
    queue.Deliver();

    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
}

} // namespace
} // namespace tarvix
