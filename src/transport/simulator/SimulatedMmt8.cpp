#include "transport/simulator/SimulatedMmt8.h"

#include "io/FileStream.h"
#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "model/SysexDumpFormat.h"
#include "model/TextBuilder.h"
#include "transport/ports/MidiIn.h"
#include "transport/ports/MidiOut.h"

#include <algorithm>
#include <utility>

namespace tarvix {

namespace {
// Roomy enough that a whole dump sent at once never waits for a buffer long.
constexpr std::uint32_t kBufferSize = 256;
constexpr std::uint32_t kBufferCount = 64;
constexpr auto kDrainPoll = std::chrono::milliseconds(2);
constexpr auto kPacingTick = std::chrono::milliseconds(2);

std::string WithoutLineEnd(std::string text)
{
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
        text.pop_back();
    return text;
}

// The F0..F7 messages of bytes that must be nothing else; false at a gap.
bool SplitMessages(std::span<const std::uint8_t> bytes,
                   std::vector<std::span<const std::uint8_t>>& messages)
{
    while (!bytes.empty()) {
        const auto end = std::find(bytes.begin(), bytes.end(), kSysexEnd);
        if (bytes.front() != kSysexStart || end == bytes.end())
            return false;
        const auto length = static_cast<std::size_t>(end - bytes.begin()) + 1;
        messages.push_back(bytes.first(length));
        bytes = bytes.subspan(length);
    }
    return true;
}

bool IsLoadableDump(std::span<const std::uint8_t> message, std::string& error)
{
    bool isDump = false;
    IdentifySysex(message, isDump);
    CMmt8Memory probe;
    return isDump && LoadSysexData(probe, message, error);
}
} // namespace

struct SimulatedMmt8::Connection {
    explicit Connection(MidiDriver& driver) : input(driver), output(driver) {}

    CMidiIn input;
    CMidiOut output;
    std::size_t seen = 0; // messages of the input list already taken in
};

SimulatedMmt8::SimulatedMmt8(std::vector<std::uint8_t> memory, Options options, Log log)
    : m_options(std::move(options)), m_log(std::move(log)), m_memory(std::move(memory))
{
    m_sender = std::thread([this] { RunSender(); });
}

SimulatedMmt8::~SimulatedMmt8()
{
    {
        const std::lock_guard lock(m_senderLock);
        m_stopping = true;
    }
    m_senderWake.notify_all();
    m_sender.join();
    const std::lock_guard lock(m_connectionsLock);
    m_connections.clear();
}

bool SimulatedMmt8::CheckMemory(std::span<const std::uint8_t> memory, std::string& error)
{
    std::vector<std::span<const std::uint8_t>> messages;
    if (!SplitMessages(memory, messages)) {
        error = "Invalid SysEx format\n";
        return false;
    }
    error = "Invalid sysex data\n";
    return std::any_of(messages.begin(), messages.end(),
                       [&error](const auto& message) { return IsLoadableDump(message, error); });
}

double SimulatedMmt8::GetWireSeconds(std::size_t bytes)
{
    return static_cast<double>(bytes) / kWireBytesPerSecond;
}

bool SimulatedMmt8::Attach(MidiDriver& driver, const std::string& inputName,
                           const std::string& outputName, std::string& error)
{
    auto connection = std::make_unique<Connection>(driver);
    connection->input.SetBufferSize(kBufferSize);
    connection->input.SetBufferCount(kBufferCount);
    connection->output.SetBufferSize(kBufferSize);
    connection->output.SetBufferCount(kBufferCount);
    // The pacing is the sender's own.
    connection->output.SetBufferDelay(0);
    connection->output.SetSysexDelay(0);
    for (CMidiDevice* port : {static_cast<CMidiDevice*>(&connection->input),
                              static_cast<CMidiDevice*>(&connection->output)}) {
        const std::string& name = port == &connection->input ? inputName : outputName;
        if (!port->OpenByName(name)) {
            error = FormatText("Can't open device \"%s\", error: %s\n", name.c_str(),
                               port->GetLastErrorText().c_str());
            return false;
        }
    }
    connection->input.StartReceive();
    const std::lock_guard lock(m_connectionsLock);
    m_connections.push_back(std::move(connection));
    return true;
}

bool SimulatedMmt8::RequestSend()
{
    {
        const std::lock_guard lock(m_senderLock);
        if (m_sending)
            return false;
        m_sending = true;
        m_sendRequested = true;
    }
    m_senderWake.notify_all();
    return true;
}

bool SimulatedMmt8::IsSending() const
{
    const std::lock_guard lock(m_senderLock);
    return m_sending;
}

std::vector<std::uint8_t> SimulatedMmt8::GetMemory() const
{
    const std::lock_guard lock(m_memoryLock);
    return m_memory;
}

void SimulatedMmt8::Poll()
{
    // Copied out first: loading and writing must not hold the list locks.
    std::vector<std::vector<std::uint8_t>> arrived;
    {
        const std::lock_guard lock(m_connectionsLock);
        for (const auto& connection : m_connections) {
            const auto messages = connection->input.LockMessages();
            for (; connection->seen < messages->size(); ++connection->seen) {
                const CSysexMessage& message = *(*messages)[connection->seen];
                // Only the last message can still grow.
                if (!message.IsComplete() && connection->seen + 1 == messages->size())
                    break;
                arrived.emplace_back(message.View().begin(), message.View().end());
            }
        }
    }
    for (const auto& message : arrived)
        TakeIn(message);
}

void SimulatedMmt8::TakeIn(std::span<const std::uint8_t> message)
{
    const bool complete = message.size() >= 2 && message.front() == kSysexStart &&
                          message.back() == kSysexEnd;
    bool isDump = false;
    const char* label = IdentifySysex(message, isDump);
    const auto size = static_cast<unsigned>(message.size());
    if (!complete || !isDump) {
        Say(FormatText("Ignored %s%s sysex %u bytes", complete ? "" : "incomplete ", label, size));
        return;
    }
    std::string error;
    if (!IsLoadableDump(message, error)) {
        Say(WithoutLineEnd(FormatText("Can't load sysex message, error: %s", error.c_str())));
        return;
    }
    {
        const std::lock_guard lock(m_memoryLock);
        m_memory.assign(message.begin(), message.end());
    }
    Say(FormatText("Received %s sysex %u bytes", label, size));
    if (m_options.receivedPath.empty())
        return;
    if (WriteFileReplacing(m_options.receivedPath, message.data(), size, error))
        Say("Wrote " + m_options.receivedPath);
    else
        Say(WithoutLineEnd(error));
}

void SimulatedMmt8::RunSender()
{
    std::unique_lock lock(m_senderLock);
    for (;;) {
        m_senderWake.wait(lock, [this] { return m_stopping || m_sendRequested; });
        if (m_stopping)
            return;
        m_sendRequested = false;
        lock.unlock();
        Send(GetMemory());
        lock.lock();
        m_sending = false;
    }
}

void SimulatedMmt8::Send(const std::vector<std::uint8_t>& bytes)
{
    Say(FormatText("Sending %u bytes%s", static_cast<unsigned>(bytes.size()),
                   m_options.wireSpeed ? " at wire speed" : ""));
    const auto start = std::chrono::steady_clock::now();
    const std::span<const std::uint8_t> all(bytes);
    if (!m_options.wireSpeed) {
        QueueEverywhere(all);
    } else {
        // A byte goes out once the cable would have carried it, never
        // sooner. A port may hand over only a piece per cycle of its
        // system, so each piece holds all that has come due since the
        // last one went.
        std::size_t queued = 0;
        while (queued < all.size()) {
            if (!WaitUntil(std::chrono::steady_clock::now() + kPacingTick))
                return;
            const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
            const auto due = std::min(
                all.size(), static_cast<std::size_t>(elapsed.count() * kWireBytesPerSecond));
            if (due > queued && !AnythingQueued()) {
                QueueEverywhere(all.subspan(queued, due - queued));
                queued = due;
            }
        }
    }
    while (AnythingQueued()) {
        if (!WaitUntil(std::chrono::steady_clock::now() + kDrainPoll))
            return;
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    Say(FormatText("Sent %u bytes in %.2f s", static_cast<unsigned>(bytes.size()), took.count()));
}

void SimulatedMmt8::QueueEverywhere(std::span<const std::uint8_t> bytes)
{
    const std::lock_guard lock(m_connectionsLock);
    for (const auto& connection : m_connections)
        connection->output.QueueSysex(bytes, true);
}

bool SimulatedMmt8::AnythingQueued() const
{
    const std::lock_guard lock(m_connectionsLock);
    return std::any_of(m_connections.begin(), m_connections.end(), [](const auto& connection) {
        std::uint32_t total = 0;
        std::uint32_t sent = 0;
        std::uint32_t count = 0;
        return connection->output.GetQueueState(total, sent, count);
    });
}

bool SimulatedMmt8::WaitUntil(std::chrono::steady_clock::time_point deadline)
{
    std::unique_lock lock(m_senderLock);
    return !m_senderWake.wait_until(lock, deadline, [this] { return m_stopping; });
}

void SimulatedMmt8::Say(const std::string& line)
{
    const std::lock_guard lock(m_logLock);
    if (m_log)
        m_log(line);
}

} // namespace tarvix
