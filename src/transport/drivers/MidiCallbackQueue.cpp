#include "transport/drivers/MidiCallbackQueue.h"

#include <utility>

namespace tarvix {

void CMidiCallbackQueue::Post(std::function<void()> call)
{
    const std::lock_guard lock(m_mutex);
    m_calls.push_back(std::move(call));
}

void CMidiCallbackQueue::Post(const MidiPortHandle& port, MidiCallbackMessage message,
                              MidiHeader* header)
{
    // By value: the handle may be closed and freed before the call runs.
    MidiCallback callback = port.m_callback;
    void* instance = port.m_instance;
    auto handle = const_cast<MidiHandle>(&port);
    if (callback == nullptr) {
        return;
    }
    Post([=] { callback(handle, message, instance, header); });
}

void CMidiCallbackQueue::Deliver()
{
    std::unique_lock lock(m_mutex);
    if (m_delivering) {
        if (m_deliverer == std::this_thread::get_id()) {
            return; // called back from a callback: the loop below runs it
        }
        m_delivered.wait(lock, [this] { return !m_delivering; });
    }
    m_delivering = true;
    m_deliverer = std::this_thread::get_id();
    while (!m_calls.empty()) {
        std::function<void()> call = std::move(m_calls.front());
        m_calls.pop_front();
        lock.unlock();
        call();
        lock.lock();
    }
    m_delivering = false;
    m_delivered.notify_all();
}

} // namespace tarvix
