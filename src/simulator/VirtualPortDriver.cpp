#include "simulator/VirtualPortDriver.h"

#include <utility>

namespace tarvix {

VirtualPortDriver::VirtualPortDriver(MidiDriver& backend, Opener opener, std::string inputName,
                                     std::string outputName)
    : m_backend(backend), m_opener(std::move(opener)), m_inputName(std::move(inputName)),
      m_outputName(std::move(outputName))
{
}

const std::string& VirtualPortDriver::NameOf(MidiDirection direction) const
{
    return direction == MidiDirection::Input ? m_inputName : m_outputName;
}

std::string VirtualPortDriver::GetName() const
{
    return m_backend.GetName();
}

std::uint32_t VirtualPortDriver::GetNumDevs(MidiDirection /*direction*/)
{
    return 1;
}

MidiResult VirtualPortDriver::GetDevName(MidiDirection direction, std::uint32_t index,
                                         std::string& name)
{
    if (index != 0)
        return kMidiBadDeviceId;
    name = NameOf(direction);
    return kMidiNoError;
}

MidiResult VirtualPortDriver::Open(MidiDirection direction, std::uint32_t index,
                                   MidiCallback callback, void* instance, MidiHandle& handle)
{
    if (index != 0)
        return kMidiBadDeviceId;
    return m_opener(direction, NameOf(direction), callback, instance, handle);
}

MidiResult VirtualPortDriver::Close(MidiHandle handle)
{
    return m_backend.Close(handle);
}

MidiResult VirtualPortDriver::Reset(MidiHandle handle)
{
    return m_backend.Reset(handle);
}

MidiResult VirtualPortDriver::PrepareHeader(MidiHandle handle, MidiHeader& header)
{
    return m_backend.PrepareHeader(handle, header);
}

MidiResult VirtualPortDriver::UnprepareHeader(MidiHandle handle, MidiHeader& header)
{
    return m_backend.UnprepareHeader(handle, header);
}

MidiResult VirtualPortDriver::AddBuffer(MidiHandle handle, MidiHeader& header)
{
    return m_backend.AddBuffer(handle, header);
}

MidiResult VirtualPortDriver::Start(MidiHandle handle)
{
    return m_backend.Start(handle);
}

MidiResult VirtualPortDriver::LongMsg(MidiHandle handle, MidiHeader& header)
{
    return m_backend.LongMsg(handle, header);
}

bool VirtualPortDriver::IsSoftwareOnly(MidiHandle handle)
{
    return m_backend.IsSoftwareOnly(handle);
}

std::uint64_t VirtualPortDriver::GetLostInputBytes(MidiHandle handle)
{
    return m_backend.GetLostInputBytes(handle);
}

std::string VirtualPortDriver::GetPortFailure(MidiHandle handle)
{
    return m_backend.GetPortFailure(handle);
}

std::string VirtualPortDriver::GetErrorText(MidiResult result) const
{
    return m_backend.GetErrorText(result);
}

std::string VirtualPortDriver::GetUnavailableReason() const
{
    return m_backend.GetUnavailableReason();
}

} // namespace tarvix
