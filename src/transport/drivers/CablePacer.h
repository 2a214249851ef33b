#pragma once

#include <chrono>
#include <cstddef>
#include <functional>

namespace tarvix {

// A MIDI cable as a clock. The cable carries 31250 baud at 10 bits a byte:
// 3125 bytes a second, one byte every 320 microseconds. A sender hands
// bytes over no faster than the cable could have carried them since its
// send began, plus a lead of a few bytes that the far end's buffer holds;
// a receiver's buffer of that size fills at the rate bytes arrive and
// drains at the cable's rate, and what does not fit is lost.
//
// The same object serves both sides: the output ports pace every driver
// with it, and the simulated device uses it as the MIDI interface buffer
// its input drains through. The clock is injected so that tests can step
// it byte by byte. Not thread-safe: the owner locks around it.
class CCablePacer {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Clock = std::function<TimePoint()>;

    static constexpr std::size_t kBytesPerSecond = 3125;
    static constexpr std::chrono::nanoseconds kByteTime{1'000'000'000 / kBytesPerSecond};
    // Small enough for the smallest buffers found between a port and the
    // cable (a USB interface's, a raw MIDI device's 4 KB), large enough
    // that a few milliseconds of scheduling delay never starve the cable.
    static constexpr std::size_t kDefaultLead = 1024;

    // catchUp: how far a sender that fell behind (woken late) may make up
    // for it, beyond the lead. 0 for a sender to a buffer, which drained
    // meanwhile anyway; a device that must keep the cable busy, as a real
    // one does, makes up for a late wake-up within a send.
    explicit CCablePacer(std::size_t lead = kDefaultLead, Clock clock = {},
                         std::chrono::nanoseconds catchUp = std::chrono::nanoseconds::zero());

    std::size_t GetLead() const { return m_lead; }
    TimePoint Now() const;

    // Bytes handed over that the cable has not carried yet.
    std::size_t GetBacklog() const;
    // How many bytes may be handed over now.
    std::size_t GetAllowance() const;
    // When count bytes may be handed over (now, if they may already);
    // count is cut to the lead, which is all that ever may.
    TimePoint WhenAllowed(std::size_t count) const;
    // count bytes were handed over now.
    void Hand(std::size_t count);
    // A new send begins: nothing to make up for from before it.
    void Restart();
    // Takes what fits of count bytes arriving now; returns how many did.
    std::size_t Accept(std::size_t count);
    // When the last byte handed over has left the cable.
    TimePoint GetDrainedAt() const { return m_freeAt; }
    bool IsDrained() const { return Now() >= m_freeAt; }

private:
    std::size_t m_lead;
    Clock m_clock;
    std::chrono::nanoseconds m_catchUp;
    TimePoint m_freeAt{}; // the cable is idle from then on
};

} // namespace tarvix
