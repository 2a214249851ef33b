#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace tarvix::testing {

// What a MIDI interface does with bytes from a fast computer: they wait in
// a buffer of fixed size and leave on the cable one every 320 microseconds
// (31250 baud, 10 bits a byte); a byte that finds the buffer full is lost.
// Time is passed in, so the arithmetic is tested without waiting.
class CableInput {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::microseconds kByteTime{320};

    explicit CableInput(std::size_t capacity) : m_capacity(capacity) {}

    // Bytes handed over at the time given.
    void Arrive(const std::uint8_t* data, std::size_t count, Clock::time_point now);
    // Moves to Delivered() what the cable carried by then.
    void Drain(Clock::time_point now);
    // At the end: what is held would still leave.
    void DrainAll();

    const std::vector<std::uint8_t>& Delivered() const { return m_delivered; }
    std::size_t Held() const { return m_held.size(); }
    std::size_t Lost() const { return m_lost; }

private:
    std::size_t m_capacity;
    std::deque<std::uint8_t> m_held;
    std::vector<std::uint8_t> m_delivered;
    std::size_t m_lost = 0;
    Clock::time_point m_nextLeavesAt{};
};

} // namespace tarvix::testing
