#pragma once

#include "transport/drivers/MidiDriver.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace tarvix {

// The input side every backend shares: keeps the SysEx bytes out of what
// arrives, holds them until the program has added a buffer, and fills the
// buffers as the contract in MidiDriver.h says. Not thread-safe: the owning
// driver locks around it. Headers it returns are marked done, and the
// driver passes them to LongData in the order given.
class CSysexInputQueue {
public:
    // Bytes kept while no buffer is added; beyond that arriving bytes are
    // lost (and counted), so a sender that never stops cannot eat memory.
    static constexpr std::size_t kDefaultPendingLimit = 1024 * 1024;

    explicit CSysexInputQueue(std::size_t pendingLimit = kDefaultPendingLimit);

    // The caller has checked the header (CheckHeaderToQueue).
    void AddBuffer(MidiHeader& header);
    // Until Start everything arriving is dropped.
    void Start();
    bool IsStarted() const { return m_started; }
    // Raw MIDI bytes as they came in, in any pieces; a message may span calls.
    void Write(const std::uint8_t* data, std::size_t size);
    // Fills added buffers from the bytes kept; appends the returned ones.
    void Fill(std::vector<MidiHeader*>& returned);
    // Every buffer held comes back with the bytes it has; kept bytes are
    // dropped and input stops until the next Start.
    void Reset(std::vector<MidiHeader*>& returned);

    bool HoldsBuffers() const { return !m_headers.empty(); }
    std::size_t GetPendingSize() const { return m_pending.size(); }
    // Bytes dropped: beyond the pending limit, or of a message a status
    // byte cut short.
    std::uint64_t GetLostBytes() const { return m_lostBytes; }

private:
    void Keep(std::uint8_t byte);

    std::size_t m_pendingLimit;
    struct Added {
        MidiHeader* header;
        std::uint32_t capacity; // as added: the program must not change it meanwhile
    };
    std::deque<Added> m_headers;
    std::deque<std::uint8_t> m_pending;
    bool m_started = false;
    bool m_inSysex = false;
    bool m_cut = false; // a status byte cut the last message short
    std::uint64_t m_lostBytes = 0;
};

} // namespace tarvix
