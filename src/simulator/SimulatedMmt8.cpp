#include "simulator/SimulatedMmt8.h"

#include "io/FileStream.h"
#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "model/SysexDumpFormat.h"
#include "model/TextBuilder.h"
#include "transport/drivers/CablePacer.h"
#include "transport/ports/MidiIn.h"
#include "transport/ports/MidiOut.h"

#include <algorithm>
#include <atomic>
#include <optional>
#include <utility>

namespace tarvix {

namespace {
// Roomy enough that a whole dump sent at once never waits for a buffer long.
constexpr std::uint32_t kBufferSize = 256;
constexpr std::uint32_t kBufferCount = 64;
constexpr auto kDrainPoll = std::chrono::milliseconds(2);
// At wire speed the device's bytes go out at most this far ahead of the
// cable (10 ms), so that a receiver sees them about when a real device's
// would arrive; and a late wake-up is made up for, as a real device never
// pauses mid-dump.
constexpr std::size_t kOutputLead = 32;
constexpr auto kOutputCatchUp = std::chrono::seconds(1);

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

namespace {
// The device's input port behind a MIDI interface's buffer: bytes count as
// arriving when their buffer comes back from the driver, and what the
// buffer cannot hold is lost. The bytes still reach the message list; the
// message they belong to is then taken as damaged.
class CableInput : public CMidiIn {
public:
    CableInput(IMidiDriver& driver, std::optional<std::size_t> buffer)
        : CMidiIn(driver),
          m_buffer(buffer ? std::make_optional<CCablePacer>(*buffer) : std::nullopt)
    {
    }
    // Closed while still a CableInput: the driver's callbacks and the
    // worker end before this part of the object goes.
    ~CableInput() override
    {
        if (IsOpen())
            Close();
    }
    CableInput(const CableInput&) = delete;
    CableInput& operator=(const CableInput&) = delete;

    std::uint64_t TakeOverflow() { return m_overflow.exchange(0); }

protected:
    void OnMessage(MidiCallbackMessage message, MidiHandle /*handle*/, MidiHeader* header) override
    {
        if (message != MidiCallbackMessage::LongData || header == nullptr || !m_buffer)
            return;
        const std::lock_guard lock(m_lock);
        const std::size_t arrived = std::min(header->bytesRecorded, header->bufferLength);
        m_overflow += arrived - m_buffer->Accept(arrived);
    }

private:
    std::mutex m_lock;
    std::optional<CCablePacer> m_buffer;
    std::atomic<std::uint64_t> m_overflow{0};
};
} // namespace

struct CSimulatedMmt8::Connection {
    Connection(IMidiDriver& driver, std::optional<std::size_t> inputBuffer)
        : input(driver, inputBuffer), output(driver)
    {
    }

    CableInput input;
    CMidiOut output;
    std::size_t seen = 0; // messages of the input list already taken in
    bool damaged = false; // bytes of the message in progress were lost
};

CSimulatedMmt8::CSimulatedMmt8(std::vector<std::uint8_t> memory, Options options, Log log)
    : m_options(std::move(options)), m_log(std::move(log)), m_memory(std::move(memory))
{
    m_sender = std::thread([this] { RunSender(); });
}

CSimulatedMmt8::~CSimulatedMmt8()
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

bool CSimulatedMmt8::CheckMemory(std::span<const std::uint8_t> memory, std::string& error)
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

double CSimulatedMmt8::GetWireSeconds(std::size_t bytes)
{
    return static_cast<double>(bytes) / CCablePacer::kBytesPerSecond;
}

bool CSimulatedMmt8::Attach(IMidiDriver& driver, const std::string& inputName,
                            const std::string& outputName, std::string& error)
{
    auto connection = std::make_unique<Connection>(
        driver, m_options.wireSpeed ? std::make_optional(m_options.inputBuffer) : std::nullopt);
    connection->input.SetBufferSize(kBufferSize);
    connection->input.SetBufferCount(kBufferCount);
    connection->output.SetBufferSize(kBufferSize);
    connection->output.SetBufferCount(kBufferCount);
    // A device sends at the cable's speed, or as fast as the ports go; the
    // program's pauses are not its own.
    connection->output.SetBufferDelay(0);
    connection->output.SetSysexDelay(0);
    connection->output.SetPacing(m_options.wireSpeed ? CMidiOut::Pacing::Cable
                                                     : CMidiOut::Pacing::None,
                                 kOutputLead, kOutputCatchUp);
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

bool CSimulatedMmt8::RequestSend()
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

bool CSimulatedMmt8::IsSending() const
{
    const std::lock_guard lock(m_senderLock);
    return m_sending;
}

std::vector<std::uint8_t> CSimulatedMmt8::GetMemory() const
{
    const std::lock_guard lock(m_memoryLock);
    return m_memory;
}

void CSimulatedMmt8::Poll()
{
    // Copied out first: loading and writing must not hold the list locks.
    struct Arrived {
        std::vector<std::uint8_t> bytes;
        bool damaged;
    };
    std::vector<Arrived> arrived;
    std::uint64_t overflow = 0;
    {
        const std::lock_guard lock(m_connectionsLock);
        for (const auto& connection : m_connections) {
            // Lost bytes belong to the message in progress, or to the one
            // that has just ended.
            if (const std::uint64_t lost = connection->input.TakeOverflow(); lost != 0) {
                overflow += lost;
                connection->damaged = true;
            }
            const auto messages = connection->input.LockMessages();
            for (; connection->seen < messages->size(); ++connection->seen) {
                const CSysexMessage& message = *(*messages)[connection->seen];
                // Only the last message can still grow.
                if (!message.IsComplete() && connection->seen + 1 == messages->size())
                    break;
                arrived.push_back({{message.View().begin(), message.View().end()},
                                   std::exchange(connection->damaged, false)});
            }
        }
    }
    if (overflow != 0)
        Say(FormatText("Lost %llu bytes: the input buffer of %zu bytes overflowed",
                       static_cast<unsigned long long>(overflow), m_options.inputBuffer));
    for (const auto& message : arrived)
        TakeIn(message.bytes, message.damaged);
}

void CSimulatedMmt8::TakeIn(std::span<const std::uint8_t> message, bool damaged)
{
    const bool complete =
        message.size() >= 2 && message.front() == kSysexStart && message.back() == kSysexEnd;
    bool isDump = false;
    const char* label = IdentifySysex(message, isDump);
    const auto size = static_cast<unsigned>(message.size());
    if (damaged) {
        Say(FormatText("Ignored damaged %s sysex %u bytes", label, size));
        return;
    }
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

void CSimulatedMmt8::RunSender()
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

void CSimulatedMmt8::Send(const std::vector<std::uint8_t>& bytes)
{
    Say(FormatText("Sending %u bytes%s", static_cast<unsigned>(bytes.size()),
                   m_options.wireSpeed ? " at wire speed" : ""));
    const auto start = std::chrono::steady_clock::now();
    // At wire speed the output ports pace themselves (CMidiOut).
    QueueEverywhere(bytes);
    while (AnythingQueued()) {
        if (!WaitUntil(std::chrono::steady_clock::now() + kDrainPoll))
            return;
    }
    std::string failures;
    {
        const std::lock_guard lock(m_connectionsLock);
        for (const auto& connection : m_connections) {
            if (connection->output.HasFailed()) {
                failures += connection->output.GetFailure();
                connection->output.FreeMessages();
                connection->output.Reset();
            }
        }
    }
    if (!failures.empty()) {
        Say("Sending stopped: " + failures);
        return;
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    Say(FormatText("Sent %u bytes in %.2f s", static_cast<unsigned>(bytes.size()), took.count()));
}

void CSimulatedMmt8::QueueEverywhere(std::span<const std::uint8_t> bytes)
{
    const std::lock_guard lock(m_connectionsLock);
    for (const auto& connection : m_connections)
        connection->output.QueueSysex(bytes, true);
}

bool CSimulatedMmt8::AnythingQueued() const
{
    const std::lock_guard lock(m_connectionsLock);
    return std::any_of(m_connections.begin(), m_connections.end(), [](const auto& connection) {
        if (connection->output.HasFailed())
            return false;
        std::uint32_t total = 0;
        std::uint32_t sent = 0;
        std::uint32_t count = 0;
        return connection->output.GetQueueState(total, sent, count);
    });
}

bool CSimulatedMmt8::WaitUntil(std::chrono::steady_clock::time_point deadline)
{
    std::unique_lock lock(m_senderLock);
    return !m_senderWake.wait_until(lock, deadline, [this] { return m_stopping; });
}

void CSimulatedMmt8::Say(const std::string& line)
{
    const std::lock_guard lock(m_logLock);
    if (m_log)
        m_log(line);
}

} // namespace tarvix
