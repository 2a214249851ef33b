#pragma once

#include <cstdint>

namespace tarvix {

// The last clock a device track can hold; events after it are dropped.
inline constexpr std::uint32_t kLastImportClock = 0xFFFF;

// Ticks to device clocks: ticks x 96 / division, to the nearest clock with
// exact halves rounded down (2.5 gives 2). A division of 0 counts as 120.
std::uint64_t TicksToClocks(std::uint64_t ticks, std::uint16_t division);

// The running time of one MIDI track walked event by event, in clocks.
class CImportClock {
public:
    explicit CImportClock(std::uint16_t division) : m_division(division) {}

    // Adds an event's delta time and returns the event's clock.
    std::uint64_t Advance(std::uint32_t deltaTime)
    {
        m_ticks += deltaTime;
        return TicksToClocks(m_ticks, m_division);
    }

private:
    std::uint16_t m_division;
    // 64 bits: a long track's tick sum must not wrap back to an early clock.
    std::uint64_t m_ticks = 0;
};

} // namespace tarvix
