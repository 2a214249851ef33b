#pragma once

#include "support/Bytes.h"
#include "transport/drivers/MidiDriver.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

namespace tarvix::test {

// Collects a port's callbacks (pass Callback with this recorder as the
// instance); can wait for them when a backend calls from its own thread.
class MidiCallbackRecorder {
public:
    struct Call {
        MidiHandle handle;
        MidiCallbackMessage message;
        MidiHeader* header;
        std::vector<std::uint8_t> bytes; // LongData: what the buffer held then
    };

    static void Callback(MidiHandle handle, MidiCallbackMessage message, void* instance,
                         MidiHeader* header);

    // Runs inside the callback, after recording; e.g. to give a buffer back.
    std::function<void(const Call&)> onCall;

    std::vector<Call> Calls() const;
    std::vector<Call> Calls(MidiCallbackMessage message) const;
    // The calls from the first-th on, to follow them as they come.
    std::vector<Call> CallsSince(std::size_t first) const;
    // The bytes of every LongData so far, joined.
    std::vector<std::uint8_t> Received() const;
    bool WaitFor(const std::function<bool(const MidiCallbackRecorder&)>& condition,
                 std::chrono::milliseconds timeout) const;

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::vector<Call> m_calls;
};

// A buffer with its own storage, as a port keeps it.
struct TestBuffer {
    explicit TestBuffer(std::uint32_t size) : storage(size)
    {
        header.data = storage.data();
        header.bufferLength = size;
    }
    explicit TestBuffer(const std::vector<std::uint8_t>& bytes)
        : TestBuffer(static_cast<std::uint32_t>(bytes.size()))
    {
        Set(bytes);
    }
    // New contents in the same storage (the header keeps pointing at it).
    void Set(const std::vector<std::uint8_t>& bytes)
    {
        std::copy(bytes.begin(),
                  bytes.begin() +
                      static_cast<std::ptrdiff_t>(std::min(bytes.size(), storage.size())),
                  storage.begin());
        header.bufferLength = static_cast<std::uint32_t>(std::min(bytes.size(), storage.size()));
    }
    std::vector<std::uint8_t> storage;
    MidiHeader header;
};

using testing::MakeSysex;

} // namespace tarvix::test
