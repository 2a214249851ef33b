#include "transport/drivers/ForwardingMidiDriver.h"

namespace tarvix {

MidiResult CForwardingMidiDriver::Close(MidiHandle handle)
{
    IMidiDriver* target = Target(handle);
    if (target == nullptr)
        return kMidiInvalidHandle;
    const MidiResult result = target->Close(handle);
    if (result == kMidiNoError)
        Closed(handle);
    return result;
}

MidiResult CForwardingMidiDriver::Reset(MidiHandle handle)
{
    IMidiDriver* target = Target(handle);
    return target == nullptr ? kMidiInvalidHandle : target->Reset(handle);
}

MidiResult CForwardingMidiDriver::PrepareHeader(MidiHandle handle, MidiHeader& header)
{
    IMidiDriver* target = Target(handle);
    return target == nullptr ? kMidiInvalidHandle : target->PrepareHeader(handle, header);
}

MidiResult CForwardingMidiDriver::UnprepareHeader(MidiHandle handle, MidiHeader& header)
{
    IMidiDriver* target = Target(handle);
    return target == nullptr ? kMidiInvalidHandle : target->UnprepareHeader(handle, header);
}

MidiResult CForwardingMidiDriver::AddBuffer(MidiHandle handle, MidiHeader& header)
{
    IMidiDriver* target = Target(handle);
    return target == nullptr ? kMidiInvalidHandle : target->AddBuffer(handle, header);
}

MidiResult CForwardingMidiDriver::Start(MidiHandle handle)
{
    IMidiDriver* target = Target(handle);
    return target == nullptr ? kMidiInvalidHandle : target->Start(handle);
}

MidiResult CForwardingMidiDriver::LongMsg(MidiHandle handle, MidiHeader& header)
{
    IMidiDriver* target = Target(handle);
    return target == nullptr ? kMidiInvalidHandle : target->LongMsg(handle, header);
}

bool CForwardingMidiDriver::IsSoftwareOnly(MidiHandle handle)
{
    IMidiDriver* target = Target(handle);
    return target != nullptr && target->IsSoftwareOnly(handle);
}

std::uint64_t CForwardingMidiDriver::GetLostInputBytes(MidiHandle handle)
{
    IMidiDriver* target = Target(handle);
    return target == nullptr ? 0 : target->GetLostInputBytes(handle);
}

std::string CForwardingMidiDriver::GetPortFailure(MidiHandle handle)
{
    IMidiDriver* target = Target(handle);
    return target == nullptr ? std::string() : target->GetPortFailure(handle);
}

} // namespace tarvix
