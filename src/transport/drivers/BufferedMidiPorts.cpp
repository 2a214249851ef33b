#include "transport/drivers/BufferedMidiPorts.h"

#include "transport/drivers/MidiHeaderRules.h"

#include <algorithm>
#include <utility>

namespace tarvix {

namespace {
// With the lock held: the open port of that direction the header may join,
// or null and why not.
BufferedMidiPort* FindToQueue(const CBufferedMidiPorts& ports, MidiHandle handle,
                              MidiDirection direction, const MidiHeader& header, MidiResult& result)
{
    BufferedMidiPort* port = ports.Find(handle, direction);
    result = port == nullptr ? kMidiInvalidHandle : CheckHeaderToQueue(header);
    return result == kMidiNoError ? port : nullptr;
}
} // namespace

BufferedMidiPort* CBufferedMidiPorts::Find(MidiHandle handle) const
{
    for (const auto& port : m_ports) {
        if (port.get() == handle) {
            return port.get();
        }
    }
    return nullptr;
}

BufferedMidiPort* CBufferedMidiPorts::Find(MidiHandle handle, MidiDirection direction) const
{
    BufferedMidiPort* port = Find(handle);
    return port != nullptr && port->m_direction == direction ? port : nullptr;
}

void CBufferedMidiPorts::Insert(std::unique_ptr<BufferedMidiPort> port)
{
    m_calls.Post(*port, MidiCallbackMessage::Open, nullptr);
    m_ports.push_back(std::move(port));
}

std::unique_ptr<BufferedMidiPort> CBufferedMidiPorts::Erase(const BufferedMidiPort& port)
{
    const auto it = std::find_if(m_ports.begin(), m_ports.end(),
                                 [&port](const auto& open) { return open.get() == &port; });
    if (it == m_ports.end()) {
        return nullptr;
    }
    m_calls.Post(port, MidiCallbackMessage::Close, nullptr);
    std::unique_ptr<BufferedMidiPort> erased = std::move(*it);
    m_ports.erase(it);
    return erased;
}

void CBufferedMidiPorts::Receive(BufferedMidiPort& port, const std::uint8_t* data, std::size_t size)
{
    port.m_input.Write(data, size);
    std::vector<MidiHeader*> returned;
    port.m_input.Fill(returned);
    for (MidiHeader* header : returned) {
        m_calls.Post(port, MidiCallbackMessage::LongData, header);
    }
}

std::size_t CBufferedMidiPorts::PeekOutput(const BufferedMidiPort& port, const std::uint8_t*& data)
{
    if (port.m_output.empty()) {
        return 0;
    }
    const MidiHeader& header = *port.m_output.front();
    data = header.data + port.m_outputOffset;
    return header.bufferLength > port.m_outputOffset ? header.bufferLength - port.m_outputOffset
                                                     : 0;
}

void CBufferedMidiPorts::Sent(BufferedMidiPort& port, std::size_t count)
{
    if (port.m_output.empty()) {
        return;
    }
    MidiHeader& header = *port.m_output.front();
    port.m_outputOffset += count;
    if (port.m_outputOffset >= header.bufferLength) {
        port.m_output.pop_front();
        port.m_outputOffset = 0;
        header.bytesRecorded = header.bufferLength;
        MarkHeaderDone(header);
        m_calls.Post(port, MidiCallbackMessage::BufferDone, &header);
    }
}

void CBufferedMidiPorts::Fail(BufferedMidiPort& port, const std::string& reason)
{
    if (port.m_failure.empty())
        port.m_failure = reason;
    std::size_t handed = port.m_outputOffset;
    for (MidiHeader* header : port.m_output) {
        header->bytesRecorded = static_cast<std::uint32_t>(handed);
        handed = 0;
        header->flags |= kMidiHeaderFailed;
        MarkHeaderDone(*header);
        m_calls.Post(port, MidiCallbackMessage::BufferDone, header);
    }
    port.m_output.clear();
    port.m_outputOffset = 0;
}

MidiResult CBufferedMidiPorts::PrepareHeader(MidiHandle handle, MidiHeader& header)
{
    const std::lock_guard lock(m_mutex);
    return Find(handle) == nullptr ? kMidiInvalidHandle : PrepareMidiHeader(header);
}

MidiResult CBufferedMidiPorts::UnprepareHeader(MidiHandle handle, MidiHeader& header)
{
    const std::lock_guard lock(m_mutex);
    return Find(handle) == nullptr ? kMidiInvalidHandle : UnprepareMidiHeader(header);
}

MidiResult CBufferedMidiPorts::AddBuffer(MidiHandle handle, MidiHeader& header)
{
    {
        const std::lock_guard lock(m_mutex);
        MidiResult result = kMidiNoError;
        BufferedMidiPort* port = FindToQueue(*this, handle, MidiDirection::Input, header, result);
        if (port == nullptr) {
            return result;
        }
        port->m_input.AddBuffer(header);
        Receive(*port, nullptr, 0); // bytes that waited for a buffer
    }
    Deliver();
    return kMidiNoError;
}

MidiResult CBufferedMidiPorts::Start(MidiHandle handle)
{
    const std::lock_guard lock(m_mutex);
    BufferedMidiPort* port = Find(handle, MidiDirection::Input);
    if (port == nullptr) {
        return kMidiInvalidHandle;
    }
    port->m_input.Start();
    return kMidiNoError;
}

MidiResult CBufferedMidiPorts::Reset(MidiHandle handle,
                                     const std::function<void(BufferedMidiPort&)>& alsoLocked)
{
    {
        const std::lock_guard lock(m_mutex);
        BufferedMidiPort* port = Find(handle);
        if (port == nullptr) {
            return kMidiInvalidHandle;
        }
        std::vector<MidiHeader*> returned;
        port->m_input.Reset(returned);
        for (MidiHeader* header : returned) {
            m_calls.Post(*port, MidiCallbackMessage::LongData, header);
        }
        for (MidiHeader* header : port->m_output) {
            MarkHeaderDone(*header);
            m_calls.Post(*port, MidiCallbackMessage::BufferDone, header);
        }
        port->m_output.clear();
        port->m_outputOffset = 0;
        if (alsoLocked) {
            alsoLocked(*port);
        }
    }
    Deliver();
    return kMidiNoError;
}

MidiResult CBufferedMidiPorts::QueueOutput(MidiHandle handle, MidiHeader& header)
{
    const std::lock_guard lock(m_mutex);
    MidiResult result = kMidiNoError;
    BufferedMidiPort* port = FindToQueue(*this, handle, MidiDirection::Output, header, result);
    if (port == nullptr) {
        return result;
    }
    MarkHeaderQueued(header);
    header.flags &= ~kMidiHeaderFailed;
    header.bytesRecorded = 0;
    port->m_output.push_back(&header);
    if (!port->m_failure.empty())
        Fail(*port, port->m_failure);
    return kMidiNoError;
}

void CBufferedMidiPorts::Deliver()
{
    m_calls.Deliver();
}

} // namespace tarvix
