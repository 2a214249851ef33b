#include "transport/drivers/ForwardingMidiDriver.h"

namespace tarvix {

MidiResult CForwardingMidiDriver::Close(MidiHandle handle)
{
    const MidiResult result = Forward(handle, kMidiInvalidHandle, &IMidiDriver::Close);
    if (result == kMidiNoError)
        Closed(handle);
    return result;
}

MidiResult CForwardingMidiDriver::Reset(MidiHandle handle)
{
    return Forward(handle, kMidiInvalidHandle, &IMidiDriver::Reset);
}

MidiResult CForwardingMidiDriver::PrepareHeader(MidiHandle handle, MidiHeader& header)
{
    return Forward(handle, kMidiInvalidHandle, &IMidiDriver::PrepareHeader, header);
}

MidiResult CForwardingMidiDriver::UnprepareHeader(MidiHandle handle, MidiHeader& header)
{
    return Forward(handle, kMidiInvalidHandle, &IMidiDriver::UnprepareHeader, header);
}

MidiResult CForwardingMidiDriver::AddBuffer(MidiHandle handle, MidiHeader& header)
{
    return Forward(handle, kMidiInvalidHandle, &IMidiDriver::AddBuffer, header);
}

MidiResult CForwardingMidiDriver::Start(MidiHandle handle)
{
    return Forward(handle, kMidiInvalidHandle, &IMidiDriver::Start);
}

MidiResult CForwardingMidiDriver::LongMsg(MidiHandle handle, MidiHeader& header)
{
    return Forward(handle, kMidiInvalidHandle, &IMidiDriver::LongMsg, header);
}

bool CForwardingMidiDriver::IsSoftwareOnly(MidiHandle handle)
{
    return Forward(handle, false, &IMidiDriver::IsSoftwareOnly);
}

std::uint64_t CForwardingMidiDriver::GetLostInputBytes(MidiHandle handle)
{
    return Forward(handle, std::uint64_t{0}, &IMidiDriver::GetLostInputBytes);
}

std::string CForwardingMidiDriver::GetPortFailure(MidiHandle handle)
{
    return Forward(handle, std::string(), &IMidiDriver::GetPortFailure);
}

} // namespace tarvix
