#pragma once

#include "transport/drivers/MidiDriver.h"

#include <jack/jack.h>
#include <jack/ringbuffer.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace tarvix {

// Everything the process callback touches for one open port, and nothing
// else. Bytes cross between the callback and the driver's thread through a
// single-producer/single-consumer ring (input: the callback writes, the
// thread reads; output: the other way round) and a few atomics, so the
// callback never blocks, never allocates and never takes a lock.
class CJackRealtimePort {
public:
    CJackRealtimePort(jack_port_t* port, MidiDirection direction, std::size_t ringBytes);
    ~CJackRealtimePort();
    CJackRealtimePort(const CJackRealtimePort&) = delete;
    CJackRealtimePort& operator=(const CJackRealtimePort&) = delete;

    bool IsValid() const { return m_ring != nullptr; }
    jack_port_t* GetPort() const { return m_port; }

    // The process callback's part; true when bytes moved.
    bool Process(jack_nframes_t frames);
    // Also the callback's: cycles ran without us. Input: a SysEx message
    // under way lost their bytes, at least one.
    void CyclesMissed();

    // The driver thread's part.
    // Input: hands over what the callback stored, in one or two pieces.
    void ReadInput(const std::function<void(const std::uint8_t*, std::size_t)>& sink);
    // Output: takes what fits in the ring; returns how much.
    std::size_t WriteOutput(const std::uint8_t* data, std::size_t size);
    // Output: bytes the callback has taken from the ring so far (sent, or
    // dropped by a flush).
    std::uint64_t GetMoved() const { return m_moved.load(); }
    // Output: the callback drops what the ring holds at its next cycle;
    // nothing may be written until it has.
    void RequestFlush() { m_flushRequested.fetch_add(1); }
    bool IsFlushing() const { return m_flushRequested.load() != m_flushDone.load(); }
    // Input: bytes of events dropped because the ring was full, and those
    // counted for cycles missed.
    std::uint64_t GetLostBytes() const { return m_lost.load(); }

private:
    bool ProcessInput(void* buffer);
    bool ProcessOutput(void* buffer);

    jack_port_t* m_port;
    MidiDirection m_direction;
    jack_ringbuffer_t* m_ring;
    std::atomic<std::uint64_t> m_moved{0};
    std::atomic<std::uint64_t> m_lost{0};
    std::atomic<std::uint32_t> m_flushRequested{0};
    std::atomic<std::uint32_t> m_flushDone{0};
    bool m_inSysex = false; // input, as far as the callback has seen
};

} // namespace tarvix
