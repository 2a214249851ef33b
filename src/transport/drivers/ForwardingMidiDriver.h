#pragma once

#include "transport/drivers/MidiDriver.h"

namespace tarvix {

// A driver whose open ports belong to other drivers: every operation on a
// handle goes to the driver that opened it. The service over several
// backends and the simulated device's view of one backend are such
// drivers; they list and open, this does the rest.
class CForwardingMidiDriver : public IMidiDriver {
public:
    MidiResult Close(MidiHandle handle) override;
    MidiResult Reset(MidiHandle handle) override;
    MidiResult PrepareHeader(MidiHandle handle, MidiHeader& header) override;
    MidiResult UnprepareHeader(MidiHandle handle, MidiHeader& header) override;
    MidiResult AddBuffer(MidiHandle handle, MidiHeader& header) override;
    MidiResult Start(MidiHandle handle) override;
    MidiResult LongMsg(MidiHandle handle, MidiHeader& header) override;
    bool IsSoftwareOnly(MidiHandle handle) override;
    std::uint64_t GetLostInputBytes(MidiHandle handle) override;
    std::string GetPortFailure(MidiHandle handle) override;

protected:
    // The driver that opened the handle, or null for one it does not know.
    virtual IMidiDriver* Target(MidiHandle handle) const = 0;
    // The handle was closed.
    virtual void Closed(MidiHandle /*handle*/) {}
};

} // namespace tarvix
