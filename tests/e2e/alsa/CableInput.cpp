#include "CableInput.h"

#include <algorithm>

namespace tarvix::testing {

void CableInput::Arrive(const std::uint8_t* data, std::size_t count, Clock::time_point now)
{
    Drain(now);
    if (m_held.empty()) {
        m_nextLeavesAt = std::max(m_nextLeavesAt, now); // an idle cable starts at once
    }
    const std::size_t room = m_capacity - m_held.size();
    const std::size_t kept = std::min(room, count);
    m_held.insert(m_held.end(), data, data + kept);
    m_lost += count - kept;
}

void CableInput::Drain(Clock::time_point now)
{
    while (!m_held.empty() && m_nextLeavesAt <= now) {
        m_delivered.push_back(m_held.front());
        m_held.pop_front();
        m_nextLeavesAt += kByteTime;
    }
}

void CableInput::DrainAll()
{
    m_delivered.insert(m_delivered.end(), m_held.begin(), m_held.end());
    m_held.clear();
}

} // namespace tarvix::testing
