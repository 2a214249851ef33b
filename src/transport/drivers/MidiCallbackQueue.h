#pragma once

#include "transport/drivers/MidiPortHandle.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace tarvix {

// Runs a driver's callbacks one at a time, in the order they were posted,
// without any driver lock held. A driver posts while holding its own lock
// (so the queue order is the order of its state changes) and calls Deliver
// after releasing it. Whoever finds nobody delivering delivers everything
// queued, including what a callback posts by calling back into the driver.
// A thread that finds another one delivering waits until everything queued
// so far has run: Close and Reset promise their callbacks before they
// return, and the caller may free the instance right after.
class CMidiCallbackQueue {
public:
    void Post(std::function<void()> call);
    // The port's callback with its handle and instance.
    void Post(const MidiPortHandle& port, MidiCallbackMessage message, MidiHeader* header);
    void Deliver();

private:
    std::mutex m_mutex;
    std::condition_variable m_delivered;
    std::deque<std::function<void()>> m_calls;
    bool m_delivering = false;
    std::thread::id m_deliverer;
};

} // namespace tarvix
