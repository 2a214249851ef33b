#include "transport/transfer/SysexTransfer.h"

#include "model/SysexDump.h"
#include "model/TextBuilder.h"
#include "transport/ports/MidiIn.h"
#include "transport/ports/MidiOut.h"
#include "transport/transfer/TransferView.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <thread>
#include <utility>

namespace tarvix {

namespace {
// Lines of received messages shown, the latest ones.
constexpr std::size_t kShownMessages = 3;
// A send that is over this soon needs no progress display.
constexpr auto kQuickSendTime = std::chrono::milliseconds(100);

std::uint32_t ClampedSize(std::size_t size)
{
    return static_cast<std::uint32_t>(
        std::min<std::size_t>(size, std::numeric_limits<std::uint32_t>::max()));
}
} // namespace

CSysexTransfer::CSysexTransfer(CMidiIn& input, CMidiOut& output, ITransferView& view,
                               std::uint32_t progressMaximum, std::string prompt)
    : m_input(input), m_output(output), m_view(view), m_progressMaximum(progressMaximum),
      m_prompt(std::move(prompt))
{
}

bool CSysexTransfer::RunTransfer(AwaitedSysex awaited, std::span<const std::uint8_t> bytes)
{
    if (!m_input.IsOpen()) {
        m_view.ReportMessage("Midi Input device is not open\n");
        return false;
    }
    m_input.StartReceive();
    m_awaited = awaited;
    if (bytes.empty())
        return ShowProgress();
    return SendBytes(bytes);
}

bool CSysexTransfer::SendBytes(std::span<const std::uint8_t> bytes)
{
    if (!m_output.IsOpen() && m_awaited == AwaitedSysex::None) {
        m_view.ReportMessage("Midi Output device is not open\n");
        return false;
    }
    if (m_output.IsOpen() && !bytes.empty()) {
        m_sendBytes = bytes.data();
        m_sendSize = ClampedSize(bytes.size());
        if (!m_output.QueueSysex(bytes, false)) {
            const std::string reason = m_output.GetLastError() != kMidiNoError
                                           ? m_output.GetLastErrorText()
                                           : std::string("Invalid SysEx format");
            m_view.ReportMessage(
                FormatText("Can't start sending SysEx message, error: %s\n", reason.c_str()));
            return false;
        }
    }
    if (m_awaited == AwaitedSysex::None) {
        std::this_thread::sleep_for(kQuickSendTime);
        std::uint32_t total = 0;
        std::uint32_t sent = 0;
        std::uint32_t count = 0;
        if (!m_output.HasFailed() && !m_output.GetQueueState(total, sent, count)) {
            m_sendBytes = nullptr;
            return true;
        }
    }
    return ShowProgress();
}

bool CSysexTransfer::Tick()
{
    if (UpdateSend())
        return false;
    if (m_awaited != AwaitedSysex::None) {
        UpdateReceive();
        return false;
    }
    return true;
}

std::uint32_t CSysexTransfer::GetProgressPosition() const
{
    // A dump is larger on the wire than the memory it carries; the bar
    // stays full rather than leave its range.
    return std::min(m_progressPosition, m_progressRange);
}

bool CSysexTransfer::ShowProgress()
{
    if (m_sendBytes != nullptr) {
        m_text = FormatText("Sending %u bytes", m_sendSize);
        SetProgress(m_sendSize, 0);
    } else {
        SetProgress(m_progressMaximum, 0);
    }
    const bool finished = m_view.RunProgress(*this);
    if (m_input.IsOpen())
        m_input.Stop();
    // A cancel drops what was not sent yet; the device may have part of it.
    if (m_output.IsOpen()) {
        m_output.FreeMessages();
        m_output.Reset();
    }
    if (!m_failure.empty()) {
        m_view.ReportMessage(m_failure);
        return false;
    }
    return finished;
}

bool CSysexTransfer::UpdateSend()
{
    if (m_sendBytes == nullptr)
        return false;
    if (m_output.HasFailed()) {
        const auto handed = static_cast<unsigned>(
            std::min<std::uint64_t>(m_output.GetHandedOverBytes(), m_sendSize));
        m_failure = FormatText("Sending stopped after %u of %u bytes: %s\n", handed, m_sendSize,
                               m_output.GetFailure().c_str());
        m_sendBytes = nullptr;
        m_awaited = AwaitedSysex::None; // the transfer is over
        return false;
    }
    std::uint32_t total = 0;
    std::uint32_t sent = 0;
    std::uint32_t count = 0;
    if (m_output.GetQueueState(total, sent, count)) {
        const std::uint32_t remaining = std::min(total - std::min(sent, total), m_sendSize);
        m_progressPosition = m_sendSize - remaining;
        return true;
    }
    m_sendBytes = nullptr;
    return false;
}

void CSysexTransfer::UpdateReceive()
{
    std::string text;
    if (m_sendSize != 0)
        text = FormatText("Sent %u bytes\n", m_sendSize);
    std::uint32_t total = 0;
    {
        const auto messages = m_input.LockMessages();
        const std::size_t count = messages->size();
        for (std::size_t i = 0; i < count; ++i) {
            const CSysexMessage& message = *(*messages)[i];
            total += message.GetSize();
            bool isDump = false;
            const char* label = IdentifySysex(message.View(), isDump);
            if (i + kShownMessages >= count) {
                text += FormatText("%s %s sysex %u bytes\n",
                                   message.IsComplete() ? "Received" : "Receiving", label,
                                   message.GetSize());
            }
            const AwaitedSysex kind = isDump ? AwaitedSysex::Mmt8Dump : AwaitedSysex::None;
            if (message.IsComplete() && kind == m_awaited) {
                m_awaited = AwaitedSysex::None;
                break;
            }
        }
    }
    if (total == 0)
        text += m_prompt;
    if (const std::uint64_t lost = m_input.GetLostBytes(); lost != 0)
        text += FormatText("%llu bytes were lost while receiving\n",
                           static_cast<unsigned long long>(lost));
    m_text = std::move(text);
    SetProgress(m_progressMaximum, total);
}

void CSysexTransfer::SetProgress(std::uint32_t range, std::uint32_t position)
{
    m_progressRange = range;
    m_progressPosition = position;
}

} // namespace tarvix
