#include "simulator/VirtualPortDriver.h"

#include <utility>

namespace tarvix {

CVirtualPortDriver::CVirtualPortDriver(IMidiDriver& backend, Opener opener, std::string inputName,
                                       std::string outputName)
    : m_backend(backend), m_opener(std::move(opener)), m_inputName(std::move(inputName)),
      m_outputName(std::move(outputName))
{
}

const std::string& CVirtualPortDriver::NameOf(MidiDirection direction) const
{
    return direction == MidiDirection::Input ? m_inputName : m_outputName;
}

std::string CVirtualPortDriver::GetName() const
{
    return m_backend.GetName();
}

std::uint32_t CVirtualPortDriver::GetNumDevs(MidiDirection /*direction*/)
{
    return 1;
}

MidiResult CVirtualPortDriver::GetDevName(MidiDirection direction, std::uint32_t index,
                                          std::string& name)
{
    if (index != 0)
        return kMidiBadDeviceId;
    name = NameOf(direction);
    return kMidiNoError;
}

MidiResult CVirtualPortDriver::Open(MidiDirection direction, std::uint32_t index,
                                    MidiCallback callback, void* instance, MidiHandle& handle)
{
    if (index != 0)
        return kMidiBadDeviceId;
    return m_opener(direction, NameOf(direction), callback, instance, handle);
}

std::string CVirtualPortDriver::GetErrorText(MidiResult result) const
{
    return m_backend.GetErrorText(result);
}

std::string CVirtualPortDriver::GetUnavailableReason() const
{
    return m_backend.GetUnavailableReason();
}

} // namespace tarvix
