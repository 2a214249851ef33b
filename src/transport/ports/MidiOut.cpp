#include "transport/ports/MidiOut.h"

#include "model/SysexDumpFormat.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>
#include <utility>

namespace tarvix {

namespace {
void SleepMilliseconds(std::uint32_t delay)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(delay));
}
} // namespace

CMidiOut::CMidiOut(IMidiDriver& driver, CCablePacer::Clock clock)
    : CMidiDevice(driver, MidiDirection::Output), m_clock(std::move(clock)),
      m_pacer(CCablePacer::kDefaultLead, m_clock)
{
}

CMidiOut::~CMidiOut()
{
    if (IsOpen())
        Close();
}

bool CMidiOut::Open(std::uint32_t index)
{
    m_failed = false;
    if (!OpenPort(index, m_sysexSent))
        return false;
    m_paced = m_pacing == Pacing::Cable ||
              (m_pacing == Pacing::Auto && !Driver().IsSoftwareOnly(Handle()));
    std::lock_guard lock(ListLock());
    m_pacer = CCablePacer(m_lead, m_clock, m_catchUp);
    return true;
}

std::string CMidiOut::GetFailure()
{
    if (!m_failed)
        return {};
    std::string reason = IsOpen() ? Driver().GetPortFailure(Handle()) : std::string();
    return reason.empty() ? GetErrorText(kMidiError) : reason;
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
    m_failed = false;
    m_sysexSent.Set();
    return reset;
}

bool CMidiOut::QueueSysex(std::span<const std::uint8_t> bytes, bool asOneMessage)
{
    if (bytes.empty())
        return true;
    {
        std::lock_guard lock(ListLock());
        if (Messages().empty()) {
            m_handedOver = 0;
            m_pacer.Restart();
        }
    }
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
    constexpr std::chrono::nanoseconds kUntilWoken{-1};
    std::chrono::nanoseconds wait = kUntilWoken;
    while (!IsStopping()) {
        if (wait < std::chrono::nanoseconds::zero())
            WaitForWakeUp();
        else
            WaitForWakeUpFor(std::chrono::ceil<std::chrono::milliseconds>(wait));
        if (IsStopping())
            break;
        wait = kUntilWoken;
        if (RemoveHandedOverMessage(wait)) {
            SleepMilliseconds(m_sysexDelay);
            m_sysexSent.Set();
        }
        while (!IsStopping() && SendNextChunk(wait))
            SleepMilliseconds(m_bufferDelay);
    }
    FreeMessages();
}

void CMidiOut::WaitAtMost(std::chrono::nanoseconds& wait, CCablePacer::TimePoint until) const
{
    const auto left = std::max(until - m_pacer.Now(), CCablePacer::TimePoint::duration::zero());
    const auto nanoseconds = std::chrono::duration_cast<std::chrono::nanoseconds>(left);
    if (wait < std::chrono::nanoseconds::zero() || nanoseconds < wait)
        wait = nanoseconds;
}

void CMidiOut::HandleCallback(MidiHandle handle, MidiCallbackMessage message, MidiHeader* header)
{
    switch (message) {
    case MidiCallbackMessage::Open:
    case MidiCallbackMessage::Close: HandleOpenClose(handle, message); break;
    case MidiCallbackMessage::BufferDone:
        if (header != nullptr) {
            m_handedOver += (header->flags & kMidiHeaderFailed) != 0
                                ? std::min(header->bytesRecorded, header->bufferLength)
                                : header->bufferLength;
            if ((header->flags & kMidiHeaderFailed) != 0)
                m_failed = true;
            CMidiBuffer::FromHeader(header)->SetFree(true);
        }
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

bool CMidiOut::RemoveHandedOverMessage(std::chrono::nanoseconds& wait)
{
    std::lock_guard lock(ListLock());
    auto& messages = Messages();
    // Wake-ups merge, so one may come from an earlier piece while the last
    // is still on the wire: the message counts as sent only once the driver
    // has returned every buffer. Removed earlier, the SysEx pause would start
    // too soon and a transfer ending on the empty queue would reset the
    // port under its last pieces.
    if (messages.empty() || messages.front()->GetOffset() != messages.front()->GetSize() ||
        !AreBuffersBack(0) || m_failed)
        return false;
    // And only once its last byte could have left the cable: done means
    // delivered, and the SysEx pause is the device's time after the end.
    if (m_paced && !m_pacer.IsDrained()) {
        WaitAtMost(wait, m_pacer.GetDrainedAt());
        return false;
    }
    const bool wasSysex = messages.front()->ContainsSysexEnd();
    messages.erase(messages.begin());
    return wasSysex;
}

bool CMidiOut::SendNextChunk(std::chrono::nanoseconds& wait)
{
    std::lock_guard lock(ListLock());
    auto& messages = Messages();
    if (messages.empty() || m_failed)
        return false;
    CSysexMessage& message = *messages.front();
    if (message.GetOffset() >= message.GetSize())
        return false;
    CMidiBuffer* buffer = FindFreeBuffer();
    if (buffer == nullptr || !UnprepareBuffer(*buffer))
        return false;
    std::uint32_t count = std::min(buffer->GetCapacity(), message.GetSize() - message.GetOffset());
    if (m_paced) {
        // Whole pieces, each as large as a buffer but never beyond the lead.
        count = std::min(count, static_cast<std::uint32_t>(m_pacer.GetLead()));
        if (m_pacer.GetAllowance() < count) {
            WaitAtMost(wait, m_pacer.WhenAllowed(count));
            return false;
        }
    }
    if (count == 0)
        return false;
    std::memcpy(buffer->data, message.Bytes().GetData() + message.GetOffset(), count);
    buffer->bufferLength = count;
    if (!PrepareBuffer(*buffer))
        return false;
    buffer->SetFree(false);
    if (m_paced)
        m_pacer.Hand(count);
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
