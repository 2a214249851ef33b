#include "transport/drivers/ForwardingMidiDriver.h"

namespace tarvix {

MidiResult ForwardingMidiDriver::Close(MidiHandle handle)
{
    MidiDriver* target = Target(handle);
    if (target == nullptr)
        return kMidiInvalidHandle;
    const MidiResult result = target->Close(handle);
    if (result == kMidiNoError)
        Closed(handle);
    return result;
}

MidiResult ForwardingMidiDriver::Reset(MidiHandle handle)
{
    MidiDriver* target = Target(handle);
    return target == nullptr ? kMidiInvalidHandle : target->Reset(handle);
}

MidiResult ForwardingMidiDriver::PrepareHeader(MidiHandle handle, MidiHeader& header)
{
    MidiDriver* target = Target(handle);
    return target == nullptr ? kMidiInvalidHandle : target->PrepareHeader(handle, header);
}

MidiResult ForwardingMidiDriver::UnprepareHeader(MidiHandle handle, MidiHeader& header)
{
    MidiDriver* target = Target(handle);
    return target == nullptr ? kMidiInvalidHandle : target->UnprepareHeader(handle, header);
}

MidiResult ForwardingMidiDriver::AddBuffer(MidiHandle handle, MidiHeader& header)
{
    MidiDriver* target = Target(handle);
    return target == nullptr ? kMidiInvalidHandle : target->AddBuffer(handle, header);
}

MidiResult ForwardingMidiDriver::Start(MidiHandle handle)
{
    MidiDriver* target = Target(handle);
    return target == nullptr ? kMidiInvalidHandle : target->Start(handle);
}

MidiResult ForwardingMidiDriver::LongMsg(MidiHandle handle, MidiHeader& header)
{
    MidiDriver* target = Target(handle);
    return target == nullptr ? kMidiInvalidHandle : target->LongMsg(handle, header);
}

bool ForwardingMidiDriver::IsSoftwareOnly(MidiHandle handle)
{
    MidiDriver* target = Target(handle);
    return target != nullptr && target->IsSoftwareOnly(handle);
}

std::uint64_t ForwardingMidiDriver::GetLostInputBytes(MidiHandle handle)
{
    MidiDriver* target = Target(handle);
    return target == nullptr ? 0 : target->GetLostInputBytes(handle);
}

std::string ForwardingMidiDriver::GetPortFailure(MidiHandle handle)
{
    MidiDriver* target = Target(handle);
    return target == nullptr ? std::string() : target->GetPortFailure(handle);
}

} // namespace tarvix
