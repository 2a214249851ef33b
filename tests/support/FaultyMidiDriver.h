#pragma once

#include "transport/drivers/loopback/LoopbackMidiDriver.h"

#include <atomic>

namespace tarvix::test {

// The Loopback driver with the faults a test asks for: a call that returns
// an error code, an open that is never confirmed, a damaged input buffer.
class FaultyMidiDriver : public CLoopbackMidiDriver {
public:
    std::atomic<MidiResult> startResult{kMidiNoError};
    std::atomic<MidiResult> longMsgResult{kMidiNoError};
    std::atomic<bool> neverConfirmOpen{false};
    // Off: the ports behave like a system's, with a cable behind them.
    std::atomic<bool> softwareOnly{true};

    bool IsSoftwareOnly(MidiHandle /*handle*/) override { return softwareOnly; }

    MidiResult Open(MidiDirection direction, std::uint32_t index, MidiCallback callback,
                    void* instance, MidiHandle& handle) override
    {
        if (neverConfirmOpen) {
            handle = reinterpret_cast<MidiHandle>(&m_unconfirmed);
            return kMidiNoError;
        }
        m_callback = callback;
        m_instance = instance;
        return CLoopbackMidiDriver::Open(direction, index, callback, instance, handle);
    }

    MidiResult Start(MidiHandle handle) override
    {
        const MidiResult fault = startResult;
        return fault != kMidiNoError ? fault : CLoopbackMidiDriver::Start(handle);
    }

    MidiResult LongMsg(MidiHandle handle, MidiHeader& header) override
    {
        const MidiResult fault = longMsgResult;
        return fault != kMidiNoError ? fault : CLoopbackMidiDriver::LongMsg(handle, header);
    }

    // Tells the port opened last that a buffer came back damaged.
    void SendLongError()
    {
        m_callback(nullptr, MidiCallbackMessage::LongError, m_instance, nullptr);
    }

private:
    MidiCallback m_callback = nullptr;
    void* m_instance = nullptr;
    int m_unconfirmed = 0;
};

} // namespace tarvix::test
