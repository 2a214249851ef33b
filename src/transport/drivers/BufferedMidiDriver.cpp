#include "transport/drivers/BufferedMidiDriver.h"

#include "transport/drivers/MidiErrorText.h"

namespace tarvix {

MidiResult CBufferedMidiDriver::Close(MidiHandle handle)
{
    {
        const std::lock_guard lock(m_ports.GetMutex());
        BufferedMidiPort* port = m_ports.Find(handle);
        if (port == nullptr)
            return kMidiInvalidHandle;
        if (port->HoldsBuffers())
            return kMidiStillPlaying;
        ClosePort(*port);
        m_ports.Erase(*port);
    }
    m_ports.Deliver();
    return kMidiNoError;
}

MidiResult CBufferedMidiDriver::Reset(MidiHandle handle)
{
    return m_ports.Reset(handle, [this](BufferedMidiPort& port) { ResetPort(port); });
}

MidiResult CBufferedMidiDriver::PrepareHeader(MidiHandle handle, MidiHeader& header)
{
    return m_ports.PrepareHeader(handle, header);
}

MidiResult CBufferedMidiDriver::UnprepareHeader(MidiHandle handle, MidiHeader& header)
{
    return m_ports.UnprepareHeader(handle, header);
}

MidiResult CBufferedMidiDriver::AddBuffer(MidiHandle handle, MidiHeader& header)
{
    return m_ports.AddBuffer(handle, header);
}

MidiResult CBufferedMidiDriver::Start(MidiHandle handle)
{
    return m_ports.Start(handle);
}

MidiResult CBufferedMidiDriver::LongMsg(MidiHandle handle, MidiHeader& header)
{
    const MidiResult result = m_ports.QueueOutput(handle, header);
    if (result == kMidiNoError) {
        // Only a port that is open gets here, and only its owner closes it.
        OutputQueued(*static_cast<BufferedMidiPort*>(handle));
    }
    m_ports.Deliver(); // a failed port has returned the buffer already
    return result;
}

std::string CBufferedMidiDriver::GetErrorText(MidiResult result) const
{
    return GetMidiErrorText(result);
}

std::string CBufferedMidiDriver::GetUnavailableReason() const
{
    const std::lock_guard lock(m_ports.GetMutex());
    return m_unavailableReason;
}

std::uint64_t CBufferedMidiDriver::GetLostInputBytes(MidiHandle handle)
{
    const std::lock_guard lock(m_ports.GetMutex());
    const BufferedMidiPort* port = m_ports.Find(handle, MidiDirection::Input);
    return port == nullptr ? 0 : port->m_lostInput + port->m_input.GetLostBytes();
}

std::string CBufferedMidiDriver::GetPortFailure(MidiHandle handle)
{
    const std::lock_guard lock(m_ports.GetMutex());
    const BufferedMidiPort* port = m_ports.Find(handle, MidiDirection::Output);
    return port == nullptr ? std::string() : port->m_failure;
}

} // namespace tarvix
