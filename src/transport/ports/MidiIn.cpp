#include "transport/ports/MidiIn.h"

#include "model/SysexDumpFormat.h"

#include <algorithm>

namespace tarvix {

CMidiIn::CMidiIn(IMidiDriver& driver) : CMidiDevice(driver, MidiDirection::Input) {}

CMidiIn::~CMidiIn()
{
    if (IsOpen())
        Close();
}

bool CMidiIn::Open(std::uint32_t index)
{
    const bool opened = OpenPort(index, m_stopEvent);
    m_lostBuffers = 0;
    return opened;
}

bool CMidiIn::Close()
{
    Stop();
    StopWorker();
    m_stopEvent.Reset();
    const bool closed = ClosePort();
    // The buffers are gone; no pointer to them may stay in the ring.
    m_queue.Resize(0);
    return closed;
}

bool CMidiIn::Reset()
{
    const bool reset = ResetPort();
    m_stopEvent.Set();
    return reset;
}

bool CMidiIn::StartReceive()
{
    Stop();
    FreeMessages();
    // Sized before any buffer goes to the driver, so that none can come
    // back into a ring that is then discarded.
    const auto freeCount = std::count_if(Buffers().begin(), Buffers().end(),
                                         [](const auto& buffer) { return buffer->IsFree(); });
    m_queue.Resize(static_cast<std::uint32_t>(freeCount));
    for (auto& buffer : Buffers()) {
        if (buffer->IsFree())
            GiveBack(*buffer);
    }
    {
        std::lock_guard lock(m_startLock);
        m_started = true;
    }
    m_errorCount = 0;
    m_lostBufferBytes = 0;
    m_driverLostAtStart = Driver().GetLostInputBytes(Handle());
    if (Succeeded(Driver().Start(Handle())))
        m_stopEvent.Reset();
    return true;
}

void CMidiIn::Stop()
{
    {
        std::lock_guard lock(m_startLock);
        if (!m_started)
            return;
        m_started = false;
    }
    Reset();
    // The list is final only once the worker has taken in every buffer the
    // reset returned.
    WaitForBuffersBack(m_lostBuffers);
}

void CMidiIn::ThreadProc()
{
    while (!IsStopping()) {
        WaitForWakeUp();
        if (IsStopping())
            break;
        // The callback wakes us once per buffer, but wake-ups merge: take
        // everything the ring holds.
        CMidiBuffer* buffer = nullptr;
        while (m_queue.Pop(buffer)) {
            CollectBytes(*buffer);
            UnprepareBuffer(*buffer);
            std::lock_guard lock(m_startLock);
            buffer->SetFree(true);
            if (m_started)
                GiveBack(*buffer);
        }
    }
}

void CMidiIn::HandleCallback(MidiHandle handle, MidiCallbackMessage message, MidiHeader* header)
{
    // Before the buffer goes to the worker, which refills it.
    if (message == MidiCallbackMessage::LongData)
        OnMessage(message, handle, header);
    switch (message) {
    case MidiCallbackMessage::Open:
    case MidiCallbackMessage::Close: HandleOpenClose(handle, message); break;
    case MidiCallbackMessage::LongData:
        if (header != nullptr && !m_queue.Push(CMidiBuffer::FromHeader(header)))
            CountLostBuffer(header);
        WakeWorker();
        break;
    case MidiCallbackMessage::LongError: CountLostBuffer(header); break;
    case MidiCallbackMessage::BufferDone: break;
    }
    if (message != MidiCallbackMessage::LongData)
        OnMessage(message, handle, header);
}

void CMidiIn::CountLostBuffer(const MidiHeader* header)
{
    ++m_errorCount;
    ++m_lostBuffers;
    if (header != nullptr)
        m_lostBufferBytes += std::min(header->bytesRecorded, header->bufferLength);
}

std::uint64_t CMidiIn::GetLostBytes() const
{
    const std::uint64_t driverLost = IsOpen() ? Driver().GetLostInputBytes(Handle()) : 0;
    return (driverLost > m_driverLostAtStart ? driverLost - m_driverLostAtStart : 0) +
           m_lostBufferBytes;
}

void CMidiIn::CollectBytes(CMidiBuffer& buffer)
{
    const std::uint32_t count =
        std::min({buffer.bytesRecorded, buffer.bufferLength, buffer.GetCapacity()});
    if (count == 0)
        return;
    std::lock_guard lock(ListLock());
    auto& messages = Messages();
    // A long SysEx arrives in several buffers: only a buffer starting with
    // F0 begins a new message, the others continue the last one.
    if (buffer.data[0] == kSysexStart || messages.empty())
        messages.push_back(std::make_unique<CSysexMessage>());
    messages.back()->Bytes().Append(buffer.data, count);
}

void CMidiIn::GiveBack(CMidiBuffer& buffer)
{
    buffer.SetFree(false);
    buffer.bufferLength = buffer.GetCapacity();
    buffer.bytesRecorded = 0;
    if (PrepareBuffer(buffer) && Succeeded(Driver().AddBuffer(Handle(), buffer)))
        return;
    UnprepareBuffer(buffer);
    buffer.SetFree(true);
}

} // namespace tarvix
