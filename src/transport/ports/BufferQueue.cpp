#include "transport/ports/BufferQueue.h"

namespace tarvix {

void CBufferQueue::Resize(std::uint32_t capacity)
{
    std::lock_guard lock(m_mutex);
    m_slots.assign(std::size_t{capacity} + 1, nullptr);
    m_read = 0;
    m_write = 0;
}

bool CBufferQueue::Push(CMidiBuffer* buffer)
{
    std::lock_guard lock(m_mutex);
    const std::size_t next = (m_write + 1) % m_slots.size();
    if (next == m_read)
        return false;
    m_slots[m_write] = buffer;
    m_write = next;
    return true;
}

bool CBufferQueue::Pop(CMidiBuffer*& buffer)
{
    std::lock_guard lock(m_mutex);
    if (m_read == m_write)
        return false;
    buffer = m_slots[m_read];
    m_read = (m_read + 1) % m_slots.size();
    return true;
}

} // namespace tarvix
