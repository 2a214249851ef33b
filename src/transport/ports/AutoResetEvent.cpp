#include "transport/ports/AutoResetEvent.h"

namespace tarvix {

void CAutoResetEvent::Set()
{
    {
        std::lock_guard lock(m_mutex);
        m_signalled = true;
    }
    m_condition.notify_one();
}

void CAutoResetEvent::Reset()
{
    std::lock_guard lock(m_mutex);
    m_signalled = false;
}

void CAutoResetEvent::Wait()
{
    std::unique_lock lock(m_mutex);
    m_condition.wait(lock, [this] { return m_signalled; });
    m_signalled = false;
}

bool CAutoResetEvent::WaitFor(std::chrono::milliseconds timeout)
{
    std::unique_lock lock(m_mutex);
    if (!m_condition.wait_for(lock, timeout, [this] { return m_signalled; }))
        return false;
    m_signalled = false;
    return true;
}

} // namespace tarvix
