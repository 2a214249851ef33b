#include "transport/drivers/jack/JackClientOpenLock.h"

#include <chrono>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace tarvix {

namespace {

// Beside the sockets it guards, one per user as they are.
std::string LockPath()
{
    return "/dev/shm/tarvix-jack-client-open-" + std::to_string(::getuid()) + ".lock";
}

// An open takes a few milliseconds, and up to a few seconds on a machine
// that is heavily loaded.
constexpr auto kWaitLimit = std::chrono::seconds(30);
constexpr auto kPoll = std::chrono::milliseconds(2);

} // namespace

CJackClientOpenLock::CJackClientOpenLock()
{
    const int fd = ::open(LockPath().c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
    if (fd < 0) {
        return; // no /dev/shm: nor are libjack's sockets there
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

CJackClientOpenLock::~CJackClientOpenLock()
{
    if (m_fd >= 0) {
        ::close(m_fd); // drops the lock
    }
}

} // namespace tarvix
