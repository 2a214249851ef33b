#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tarvix {

// An event that releases one waiter and then resets itself. A signal given
// while nobody waits is kept until the next wait, so a wake-up is never lost.
class CAutoResetEvent {
public:
    void Set();
    void Reset();
    void Wait();
    // False when the time-out passed without a signal.
    bool WaitFor(std::chrono::milliseconds timeout);

private:
    std::mutex m_mutex;
    std::condition_variable m_condition;
    bool m_signalled = false;
};

} // namespace tarvix
