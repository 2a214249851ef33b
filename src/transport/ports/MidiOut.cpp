#include "transport/ports/MidiOut.h"

#include "model/SysexDumpFormat.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>

namespace tarvix {

namespace {
void SleepMilliseconds(std::uint32_t delay)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(delay));
}
} // namespace

CMidiOut::CMidiOut(MidiDriver& driver) : CMidiDevice(driver, MidiDirection::Output) {}

CMidiOut::~CMidiOut()
{
    if (IsOpen())
        Close();
}

bool CMidiOut::Open(std::uint32_t index)
{
    return OpenPort(index, &CMidiOut::Callback, m_sysexSent);
}

bool CMidiOut::Close()
{
    // The worker goes first: woken by the buffers the reset returns, it
    // would send the rest of its message through them again.
    StopWorker();
    Reset();
    WaitForBuffersBack(0);
    m_sysexSent.Reset();
    return ClosePort();
}

bool CMidiOut::Reset()
{
    const bool reset = ResetPort();
    m_sysexSent.Set();
    return reset;
}

bool CMidiOut::QueueSysex(std::span<const std::uint8_t> bytes, bool asOneMessage)
{
    if (bytes.empty())
        return true;
    m_sysexSent.Reset();
    if (asOneMessage) {
        QueueMessage(bytes);
    } else {
        // Each search starts where the previous message's length, counted
        // from the previous start, leads; so only back-to-back messages pass.
        std::span<const std::uint8_t> rest = bytes;
        for (;;) {
            const auto start = std::find(rest.begin(), rest.end(), kSysexStart);
            const auto end = std::find(rest.begin(), rest.end(), kSysexEnd);
            if (start == rest.end() || end == rest.end() || end < start)
                return false;
            const auto length = static_cast<std::size_t>(end - start) + 1;
            QueueMessage({start, length});
            if (length == rest.size())
                break;
            rest = rest.subspan(length);
        }
    }
    WakeWorker();
    return true;
}

bool CMidiOut::GetQueueState(std::uint32_t& totalBytes, std::uint32_t& sentBytes,
                             std::uint32_t& messageCount) const
{
    totalBytes = 0;
    sentBytes = 0;
    const auto messages = LockMessages();
    for (const auto& message : *messages) {
        totalBytes += message->GetSize();
        sentBytes += message->GetOffset();
    }
    messageCount = static_cast<std::uint32_t>(messages->size());
    return messageCount != 0;
}

void CMidiOut::ThreadProc()
{
    while (!IsStopping()) {
        WaitForWakeUp();
        if (IsStopping())
            break;
        if (RemoveHandedOverMessage()) {
            SleepMilliseconds(m_sysexDelay);
            m_sysexSent.Set();
        }
        while (!IsStopping() && SendNextChunk())
            SleepMilliseconds(m_bufferDelay);
    }
    FreeMessages();
}

void CMidiOut::Callback(MidiHandle handle, MidiCallbackMessage message, void* instance,
                        MidiHeader* header)
{
    auto* self = static_cast<CMidiOut*>(static_cast<CMidiDevice*>(instance));
    self->HandleCallback(handle, message, header);
}

void CMidiOut::HandleCallback(MidiHandle handle, MidiCallbackMessage message, MidiHeader* header)
{
    switch (message) {
    case MidiCallbackMessage::Open:
    case MidiCallbackMessage::Close: HandleOpenClose(handle, message); break;
    case MidiCallbackMessage::BufferDone:
        if (header != nullptr)
            CMidiBuffer::FromHeader(header)->SetFree(true);
        WakeWorker();
        break;
    case MidiCallbackMessage::LongData:
    case MidiCallbackMessage::LongError: break;
    }
    OnMessage(message, handle, header);
}

void CMidiOut::QueueMessage(std::span<const std::uint8_t> bytes)
{
    auto message = std::make_unique<CSysexMessage>();
    message->Bytes().Append(bytes);
    std::lock_guard lock(ListLock());
    Messages().push_back(std::move(message));
}

bool CMidiOut::RemoveHandedOverMessage()
{
    std::lock_guard lock(ListLock());
    auto& messages = Messages();
    // Wake-ups merge, so one may come from an earlier piece while the last
    // is still on the wire: the message counts as sent only once the driver
    // has returned every buffer. Removed earlier, the SysEx pause would start
    // too soon and a transfer ending on the empty queue would reset the
    // port under its last pieces.
    if (messages.empty() || messages.front()->GetOffset() != messages.front()->GetSize() ||
        !AreBuffersBack(0))
        return false;
    const bool wasSysex = messages.front()->ContainsSysexEnd();
    messages.erase(messages.begin());
    return wasSysex;
}

bool CMidiOut::SendNextChunk()
{
    std::lock_guard lock(ListLock());
    auto& messages = Messages();
    if (messages.empty())
        return false;
    CSysexMessage& message = *messages.front();
    if (message.GetOffset() >= message.GetSize())
        return false;
    CMidiBuffer* buffer = FindFreeBuffer();
    if (buffer == nullptr || !UnprepareBuffer(*buffer))
        return false;
    const std::uint32_t count =
        std::min(buffer->GetCapacity(), message.GetSize() - message.GetOffset());
    if (count == 0)
        return false;
    std::memcpy(buffer->data, message.Bytes().GetData() + message.GetOffset(), count);
    buffer->bufferLength = count;
    if (!PrepareBuffer(*buffer))
        return false;
    buffer->SetFree(false);
    if (Succeeded(Driver().LongMsg(Handle(), *buffer))) {
        message.AddOffset(count);
        return true;
    }
    UnprepareBuffer(*buffer);
    buffer->SetFree(true);
    return false;
}

CMidiBuffer* CMidiOut::FindFreeBuffer()
{
    for (auto& buffer : Buffers()) {
        if (buffer->IsFree())
            return buffer.get();
    }
    return nullptr;
}

} // namespace tarvix
