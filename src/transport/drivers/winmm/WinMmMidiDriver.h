#pragma once

#include "transport/drivers/MidiDriver.h"

namespace tarvix {

// The multimedia MIDI service (winmm.dll): each operation is the service's
// own call, its callback function is turned into the driver callback, and
// its result codes pass through unchanged. The service paces output to the
// cable itself.
class WinMmMidiDriver final : public IMidiDriver {
public:
    std::string GetName() const override { return "WinMM"; }
    std::uint32_t GetNumDevs(MidiDirection direction) override;
    MidiResult GetDevName(MidiDirection direction, std::uint32_t index, std::string& name) override;
    MidiResult Open(MidiDirection direction, std::uint32_t index, MidiCallback callback,
                    void* instance, MidiHandle& handle) override;
    MidiResult Close(MidiHandle handle) override;
    MidiResult Reset(MidiHandle handle) override;
    MidiResult PrepareHeader(MidiHandle handle, MidiHeader& header) override;
    MidiResult UnprepareHeader(MidiHandle handle, MidiHeader& header) override;
    MidiResult AddBuffer(MidiHandle handle, MidiHeader& header) override;
    MidiResult Start(MidiHandle handle) override;
    MidiResult LongMsg(MidiHandle handle, MidiHeader& header) override;
    std::string GetErrorText(MidiResult result) const override;
    // The service has no state of its own to fail in: it is unavailable
    // only in that it lists no port at all.
    std::string GetUnavailableReason() const override;
};

} // namespace tarvix
