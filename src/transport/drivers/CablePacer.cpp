#include "transport/drivers/CablePacer.h"

#include <algorithm>
#include <utility>

namespace tarvix {

CCablePacer::CCablePacer(std::size_t lead, Clock clock, std::chrono::nanoseconds catchUp)
    : m_lead(lead), m_clock(std::move(clock)), m_catchUp(catchUp)
{
}

CCablePacer::TimePoint CCablePacer::Now() const
{
    return m_clock ? m_clock() : std::chrono::steady_clock::now();
}

std::size_t CCablePacer::GetBacklog() const
{
    const TimePoint now = Now();
    if (m_freeAt <= now)
        return 0;
    // A byte partly on the wire still takes its room.
    const auto pending = m_freeAt - now;
    return static_cast<std::size_t>((pending + kByteTime - std::chrono::nanoseconds(1)) /
                                    kByteTime);
}

std::size_t CCablePacer::GetAllowance() const
{
    const TimePoint now = Now();
    if (m_freeAt < now && m_catchUp > std::chrono::nanoseconds::zero()) {
        const auto behind = std::min<std::chrono::nanoseconds>(now - m_freeAt, m_catchUp);
        return m_lead + static_cast<std::size_t>(behind / kByteTime);
    }
    const std::size_t backlog = GetBacklog();
    return backlog < m_lead ? m_lead - backlog : 0;
}

CCablePacer::TimePoint CCablePacer::WhenAllowed(std::size_t count) const
{
    count = std::min(count, m_lead);
    // The backlog must have shrunk to lead - count: the cable is free at
    // m_freeAt, so that is (lead - count) byte times before.
    const TimePoint at = m_freeAt - static_cast<long long>(m_lead - count) * kByteTime;
    return std::max(at, Now());
}

void CCablePacer::Hand(std::size_t count)
{
    m_freeAt = std::max(m_freeAt, Now() - m_catchUp) + static_cast<long long>(count) * kByteTime;
}

void CCablePacer::Restart()
{
    m_freeAt = std::max(m_freeAt, Now());
}

std::size_t CCablePacer::Accept(std::size_t count)
{
    const std::size_t taken = std::min(count, GetAllowance());
    Hand(taken);
    return taken;
}

} // namespace tarvix
