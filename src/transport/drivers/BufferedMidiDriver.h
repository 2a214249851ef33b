#pragma once

#include "transport/drivers/BufferedMidiPorts.h"
#include "transport/drivers/MidiDriver.h"

#include <string>

namespace tarvix {

// A backend that keeps its ports' buffers in CBufferedMidiPorts: ALSA, JACK,
// Loopback, and whatever comes next. It answers every operation that is
// only about buffers, so that a backend implements listing, opening and
// moving bytes, and hooks in where its system needs a word.
class CBufferedMidiDriver : public IMidiDriver {
public:
    MidiResult Close(MidiHandle handle) override;
    MidiResult Reset(MidiHandle handle) override;
    MidiResult PrepareHeader(MidiHandle handle, MidiHeader& header) override;
    MidiResult UnprepareHeader(MidiHandle handle, MidiHeader& header) override;
    MidiResult AddBuffer(MidiHandle handle, MidiHeader& header) override;
    MidiResult Start(MidiHandle handle) override;
    MidiResult LongMsg(MidiHandle handle, MidiHeader& header) override;
    std::string GetErrorText(MidiResult result) const override;
    std::string GetUnavailableReason() const override;
    std::uint64_t GetLostInputBytes(MidiHandle handle) override;
    std::string GetPortFailure(MidiHandle handle) override;

protected:
    // With the ports' lock held. The port is about to be erased: release
    // what the system holds for it.
    virtual void ClosePort(BufferedMidiPort& /*port*/) {}
    // Reset has just returned the port's buffers.
    virtual void ResetPort(BufferedMidiPort& /*port*/) {}
    // Without the lock: a buffer joined an output port; start moving it.
    virtual void OutputQueued(BufferedMidiPort& /*port*/) {}

    CBufferedMidiPorts m_ports;
    // Why no ports are listed; guarded by the ports' lock.
    std::string m_unavailableReason;
};

} // namespace tarvix
