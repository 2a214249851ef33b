#include "transport/drivers/jack/JackSharedFilesLock.h"

#include <chrono>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace tarvix {

namespace {

// Beside the files it guards, one per user as they are.
std::string LockPath()
{
    return "/dev/shm/tarvix-jack-shared-files-" + std::to_string(::getuid()) + ".lock";
}

// A client opens in a few milliseconds and a server stops in well under
// a second; both take a few seconds on a machine that is heavily loaded.
constexpr auto kWaitLimit = std::chrono::seconds(30);
constexpr auto kPoll = std::chrono::milliseconds(2);

} // namespace

CJackSharedFilesLock::CJackSharedFilesLock()
{
    const int fd = ::open(LockPath().c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
    if (fd < 0) {
        return; // no /dev/shm: nor are libjack's files there
    }
    const auto deadline = std::chrono::steady_clock::now() + kWaitLimit;
    while (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        if (std::chrono::steady_clock::now() >= deadline) {
            ::close(fd);
            return;
        }
        std::this_thread::sleep_for(kPoll);
    }
    m_fd = fd;
}

CJackSharedFilesLock::~CJackSharedFilesLock()
{
    if (m_fd >= 0) {
        ::close(m_fd); // drops the lock
    }
}

} // namespace tarvix
