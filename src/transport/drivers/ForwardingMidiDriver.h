#pragma once

#include "transport/drivers/MidiDriver.h"

#include <string>
#include <utility>

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

private:
    // The operation on the handle's own driver; unknown for a handle no
    // driver here opened.
    template <typename Result, typename... Parameters, typename... Arguments>
    Result Forward(MidiHandle handle, Result unknown,
                   Result (IMidiDriver::*operation)(MidiHandle, Parameters...),
                   Arguments&&... arguments) const
    {
        IMidiDriver* target = Target(handle);
        return target == nullptr
                   ? unknown
                   : (target->*operation)(handle, std::forward<Arguments>(arguments)...);
    }
};

} // namespace tarvix
