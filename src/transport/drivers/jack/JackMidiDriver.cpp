#include "transport/drivers/jack/JackMidiDriver.h"

#include "transport/drivers/jack/JackBridgeRoute.h"
#include "transport/drivers/jack/JackRealtimePort.h"
#include "transport/drivers/jack/JackSharedFilesLock.h"

#include <jack/jack.h>
#include <jack/midiport.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <memory>
#include <utility>

namespace tarvix {

namespace {

// Input rings hold several periods of the largest events a period carries,
// so a thread that is late by a few periods loses nothing.
constexpr std::size_t kInputRingBytes = 256 * 1024;
constexpr std::size_t kOutputRingBytes = 64 * 1024;
// The thread also looks without being woken, for a server that went away.
constexpr long kIdleWakeNanoseconds = 100'000'000;
constexpr auto kCycleWaitLimit = std::chrono::seconds(2);
// A server in sync mode waits for a late client up to ten times its
// timeout each cycle; a few such cycles may pass before a new client's.
constexpr auto kFirstCycleWaitLimit = std::chrono::seconds(20);

void QuietJackMessage(const char* /*message*/) {}

// Polls, for the process callback's counters: false if the time is up.
template <typename Condition>
bool WaitUntil(Condition condition, std::chrono::steady_clock::duration limit)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

// The last client of a process closes libjack's shared files.
void CloseClient(jack_client_t* client)
{
    const CJackSharedFilesLock lock;
    jack_client_close(client);
}

std::size_t Slot(MidiDirection direction)
{
    return direction == MidiDirection::Input ? 0 : 1;
}

std::vector<std::string> Aliases(jack_client_t* client, const std::string& portName)
{
    std::vector<std::string> aliases;
    const jack_port_t* port = jack_port_by_name(client, portName.c_str());
    const int size = jack_port_name_size();
    if (port == nullptr || size <= 0) {
        return aliases;
    }
    std::vector<char> first(static_cast<std::size_t>(size));
    std::vector<char> second(static_cast<std::size_t>(size));
    char* names[2] = {first.data(), second.data()};
    const int count = jack_port_get_aliases(port, names);
    for (int i = 0; i < count && i < 2; ++i) {
        aliases.emplace_back(names[i]);
    }
    return aliases;
}

} // namespace

struct JackPort : BufferedMidiPort {
    using BufferedMidiPort::BufferedMidiPort;

    std::unique_ptr<CJackRealtimePort> m_rt;
    std::size_t m_slot = 0;
    // Output: bytes put in the ring, and how many of them have been
    // accounted to the program's buffers (by the callback's count of bytes
    // moved, or all at once by Reset).
    std::uint64_t m_pushed = 0;
    std::uint64_t m_accounted = 0;
    // Output connected to another client's port (by name; empty for a
    // port of our own): bytes wait until the connection shows, and sending
    // stops when that port goes away or the connection is removed.
    std::string m_remote;
    bool m_linkSeen = false;
    // Output: the bridge that port leads to, if any, and whether it is a
    // port of the server's own driver, before a cable.
    JackBridgeRoute m_route;
    bool m_physical = false;
};

CJackMidiDriver::CJackMidiDriver(std::string clientName, std::string serverName)
    : m_clientName(std::move(clientName)), m_serverName(std::move(serverName))
{
    sem_init(&m_wake, 0, 0);
}

CJackMidiDriver::~CJackMidiDriver()
{
    if (m_thread.joinable()) {
        m_stop = true;
        Wake();
        m_thread.join();
    }
    if (m_client != nullptr) {
        CloseClient(m_client); // no process callback runs after this
    }
    sem_destroy(&m_wake);
}

int CJackMidiDriver::ProcessCallback(std::uint32_t frames, void* driver)
{
    auto& self = *static_cast<CJackMidiDriver*>(driver);
    self.m_cyclesStarted.fetch_add(1);
    const bool missed = self.NoteCycle(frames);
    bool moved = false;
    for (const std::atomic<CJackRealtimePort*>& slot : self.m_slots) {
        if (CJackRealtimePort* port = slot.load()) {
            if (missed) {
                port->CyclesMissed();
            }
            moved = port->Process(frames) || moved;
        }
    }
    if (moved) {
        sem_post(&self.m_wake); // async-signal-safe: does not block
    }
    self.m_cyclesEnded.fetch_add(1);
    return 0;
}

bool CJackMidiDriver::NoteCycle(std::uint32_t frames)
{
    // The server's frame time grows by one period each cycle whatever
    // happens (an xrun of its own included), so a cycle that starts later
    // than the one after our last is one we were not run in.
    const jack_nframes_t start = jack_last_frame_time(m_processClient.load());
    const bool missed = m_cycleKnown && start != m_nextCycleStart;
    if (missed) {
        m_missedCycles.fetch_add(1);
        sem_post(&m_wake);
    }
    m_nextCycleStart = start + frames;
    m_cycleKnown = true;
    return missed;
}

int CJackMidiDriver::XrunCallback(void* driver)
{
    auto& self = *static_cast<CJackMidiDriver*>(driver);
    self.m_xruns.fetch_add(1);
    sem_post(&self.m_wake);
    return 0;
}

void CJackMidiDriver::ShutdownCallback(void* driver)
{
    auto& self = *static_cast<CJackMidiDriver*>(driver);
    self.m_serverGone = true;
    sem_post(&self.m_wake);
}

bool CJackMidiDriver::OpenClient()
{
    if (m_client != nullptr && !m_serverGone) {
        return true;
    }
    if (m_client != nullptr) {
        if (!m_ports.GetPorts().empty()) {
            m_unavailableReason = "The JACK server has shut down.";
            return false;
        }
        CloseClient(m_client);
        m_client = nullptr;
        m_serverGone = false;
    }
    // libjack prints its attempts on stderr; the reason is reported through
    // GetUnavailableReason instead.
    jack_set_error_function(&QuietJackMessage);
    jack_set_info_function(&QuietJackMessage);
    int options = JackNoStartServer;
    if (!m_serverName.empty()) {
        options |= JackServerName;
    }
    jack_status_t status{};
    jack_client_t* client = nullptr;
    {
        const CJackSharedFilesLock lock;
        client = jack_client_open(m_clientName.c_str(), static_cast<jack_options_t>(options),
                                  &status, m_serverName.c_str());
    }
    jack_set_error_function(nullptr);
    jack_set_info_function(nullptr);
    if (client == nullptr) {
        const std::string server = m_serverName.empty() ? "" : " \"" + m_serverName + "\"";
        m_unavailableReason = (status & JackServerFailed) != 0
                                  ? "No JACK server" + server + " is running."
                                  : "The JACK server" + server + " refused the client.";
        return false;
    }
    m_processClient = client;
    m_cycleKnown = false; // no callback runs before activation
    jack_set_process_callback(client, &CJackMidiDriver::ProcessCallback, this);
    jack_on_shutdown(client, &CJackMidiDriver::ShutdownCallback, this);
    jack_set_xrun_callback(client, &CJackMidiDriver::XrunCallback, this);
    // jack_activate may return before the server's graph holds the client
    // (jackd2 then waits for a cycle that had begun already). A client
    // closed in that while is never taken out of the graph, and a server
    // in sync mode waits for it every cycle from then on. Once our callback
    // has run, the graph holds us; this is also when our ports can work.
    const std::uint64_t cyclesBefore = m_cyclesStarted.load();
    if (jack_activate(client) != 0 ||
        !WaitUntil([&] { return m_cyclesStarted.load() != cyclesBefore || m_serverGone; },
                   kFirstCycleWaitLimit)) {
        CloseClient(client);
        m_unavailableReason = "The JACK server would not run the client.";
        return false;
    }
    m_client = client;
    m_unavailableReason.clear();
    if (!m_thread.joinable()) {
        m_thread = std::thread([this] { Run(); });
    }
    return true;
}

std::string CJackMidiDriver::GetName() const
{
    return "JACK";
}

std::string CJackMidiDriver::GetClientName() const
{
    const std::lock_guard lock(m_ports.GetMutex());
    return m_client == nullptr ? std::string() : std::string(jack_get_client_name(m_client));
}

const std::vector<std::string>& CJackMidiDriver::Listed(MidiDirection direction)
{
    std::vector<std::string>& listed = m_listed[Slot(direction)];
    if (m_listedOnce[Slot(direction)]) {
        return listed;
    }
    m_listedOnce[Slot(direction)] = true;
    listed.clear();
    if (!OpenClient()) {
        return listed;
    }
    // Ports we read from are other clients' outputs, and the other way round.
    const unsigned long flags =
        direction == MidiDirection::Input ? JackPortIsOutput : JackPortIsInput;
    const char** names = jack_get_ports(m_client, nullptr, JACK_DEFAULT_MIDI_TYPE, flags);
    const std::string own = std::string(jack_get_client_name(m_client)) + ":";
    for (std::size_t i = 0; names != nullptr && names[i] != nullptr; ++i) {
        if (std::string(names[i]).rfind(own, 0) != 0) {
            listed.emplace_back(names[i]);
        }
    }
    jack_free(static_cast<void*>(names));
    return listed;
}

std::uint32_t CJackMidiDriver::GetNumDevs(MidiDirection direction)
{
    const std::lock_guard lock(m_ports.GetMutex());
    m_listedOnce[Slot(direction)] = false; // a fresh look
    return static_cast<std::uint32_t>(Listed(direction).size());
}

MidiResult CJackMidiDriver::GetDevName(MidiDirection direction, std::uint32_t index,
                                       std::string& name)
{
    const std::lock_guard lock(m_ports.GetMutex());
    const std::vector<std::string>& listed = Listed(direction);
    if (index >= listed.size()) {
        return kMidiBadDeviceId;
    }
    name = listed[index];
    return kMidiNoError;
}

MidiResult CJackMidiDriver::Open(MidiDirection direction, std::uint32_t index,
                                 MidiCallback callback, void* instance, MidiHandle& handle)
{
    MidiResult result = kMidiNoError;
    {
        const std::lock_guard lock(m_ports.GetMutex());
        const std::vector<std::string>& listed = Listed(direction);
        if (index >= listed.size()) {
            return kMidiBadDeviceId;
        }
        const std::string remote = listed[index];
        result = OpenPort(direction, direction == MidiDirection::Input ? "in" : "out", false,
                          &remote, callback, instance, handle);
    }
    m_ports.Deliver();
    return result;
}

MidiResult CJackMidiDriver::OpenVirtual(MidiDirection direction, const std::string& portName,
                                        MidiCallback callback, void* instance, MidiHandle& handle)
{
    MidiResult result = kMidiNoError;
    {
        const std::lock_guard lock(m_ports.GetMutex());
        if (!OpenClient()) {
            return kMidiNoDriver;
        }
        result = OpenPort(direction, portName, true, nullptr, callback, instance, handle);
    }
    m_ports.Deliver();
    return result;
}

MidiResult CJackMidiDriver::OpenPort(MidiDirection direction, const std::string& portName,
                                     bool exactName, const std::string* remote,
                                     MidiCallback callback, void* instance, MidiHandle& handle)
{
    const auto freeSlot = std::find_if(m_slots.begin(), m_slots.end(),
                                       [](const auto& slot) { return slot.load() == nullptr; });
    if (freeSlot == m_slots.end()) {
        return kMidiNoMemory;
    }
    const bool input = direction == MidiDirection::Input;
    const std::string own = std::string(jack_get_client_name(m_client)) + ":";
    std::string name = portName;
    for (int n = 2; jack_port_by_name(m_client, (own + name).c_str()) != nullptr; ++n) {
        if (exactName) {
            return kMidiAllocated;
        }
        name = portName + "-" + std::to_string(n);
    }
    jack_port_t* jackPort = jack_port_register(m_client, name.c_str(), JACK_DEFAULT_MIDI_TYPE,
                                               input ? JackPortIsInput : JackPortIsOutput, 0);
    if (jackPort == nullptr) {
        return kMidiError;
    }
    auto port = std::make_unique<JackPort>(direction, callback, instance);
    port->m_rt = std::make_unique<CJackRealtimePort>(jackPort, direction,
                                                     input ? kInputRingBytes : kOutputRingBytes);
    if (!port->m_rt->IsValid()) {
        jack_port_unregister(m_client, jackPort);
        return kMidiNoMemory;
    }
    port->m_slot = static_cast<std::size_t>(freeSlot - m_slots.begin());
    freeSlot->store(port->m_rt.get());
    if (remote != nullptr) {
        const char* ours = jack_port_name(jackPort);
        const int error = input ? jack_connect(m_client, remote->c_str(), ours)
                                : jack_connect(m_client, ours, remote->c_str());
        if (error != 0 && error != EEXIST) {
            Unpublish(port->m_slot);
            jack_port_unregister(m_client, jackPort);
            return kMidiBadDeviceId; // gone since it was listed
        }
    }
    if (remote != nullptr && !input) {
        port->m_remote = *remote;
        port->m_route = ClassifyJackPort(*remote, Aliases(m_client, *remote));
        const jack_port_t* remotePort = jack_port_by_name(m_client, remote->c_str());
        port->m_physical =
            remotePort != nullptr && (jack_port_flags(remotePort) & JackPortIsPhysical) != 0;
    }
    handle = port.get();
    m_ports.Insert(std::move(port));
    return kMidiNoError;
}

void CJackMidiDriver::Unpublish(std::size_t slot)
{
    m_slots[slot].store(nullptr);
    // A cycle that began before the store may still use the port; wait
    // until every cycle begun by now has ended.
    const std::uint64_t begun = m_cyclesStarted.load();
    WaitUntil([&] { return m_cyclesEnded.load() >= begun || m_serverGone; }, kCycleWaitLimit);
}

void CJackMidiDriver::ClosePort(BufferedMidiPort& closed)
{
    auto& port = static_cast<JackPort&>(closed);
    Unpublish(port.m_slot);
    jack_port_unregister(m_client, port.m_rt->GetPort());
}

void CJackMidiDriver::ResetPort(BufferedMidiPort& reset)
{
    auto& port = static_cast<JackPort&>(reset);
    if (port.m_direction == MidiDirection::Output) {
        // What is still in the ring belongs to buffers just returned.
        port.m_rt->RequestFlush();
        port.m_accounted = port.m_pushed;
    }
}

void CJackMidiDriver::OutputQueued(BufferedMidiPort& /*port*/)
{
    Wake();
}

void CJackMidiDriver::Wake()
{
    sem_post(&m_wake);
}

void CJackMidiDriver::Account(JackPort& port, std::uint64_t bytes)
{
    while (bytes > 0 && !port.m_output.empty()) {
        const std::uint8_t* data = nullptr;
        const std::size_t left = CBufferedMidiPorts::PeekOutput(port, data);
        const std::size_t taken = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, left));
        m_ports.Sent(port, taken);
        bytes -= taken;
    }
}

bool CJackMidiDriver::Refused(JackPort& port)
{
    // Before any byte of it goes: the bridge would pass some of it.
    for (const MidiHeader* header : port.m_output) {
        if (port.m_route.Drops(header->data, header->bufferLength)) {
            m_ports.Fail(port, port.m_route.refusal);
            return true;
        }
    }
    return false;
}

void CJackMidiDriver::PushOutput(JackPort& port)
{
    // Bytes beyond those accounted are already in the ring: skip them.
    std::uint64_t inRing = port.m_pushed - port.m_accounted;
    bool front = true;
    for (MidiHeader* header : port.m_output) {
        const std::size_t start = front ? port.m_outputOffset : 0;
        front = false;
        const std::size_t length = header->bufferLength > start ? header->bufferLength - start : 0;
        if (inRing >= length) {
            inRing -= length;
            continue;
        }
        const std::size_t skip = static_cast<std::size_t>(inRing);
        inRing = 0;
        const std::size_t wanted = length - skip;
        const std::size_t written = port.m_rt->WriteOutput(header->data + start + skip, wanted);
        port.m_pushed += written;
        if (written < wanted) {
            return; // the ring is full; more after the callback's next cycle
        }
    }
}

void CJackMidiDriver::Pump()
{
    const bool serverGone = m_serverGone;
    const std::uint64_t missed = m_missedCycles.load();
    const bool missedCycles = missed != m_missedSeen;
    m_missedSeen = missed;
    const std::uint64_t xruns = m_xruns.load();
    const bool xrun = xruns != m_xrunsSeen;
    m_xrunsSeen = xruns;
    for (const auto& open : m_ports.GetPorts()) {
        auto& port = static_cast<JackPort&>(*open);
        if (port.m_direction == MidiDirection::Input) {
            port.m_rt->ReadInput([this, &port](const std::uint8_t* data, std::size_t size) {
                m_ports.Receive(port, data, size);
            });
            port.m_lostInput = port.m_rt->GetLostBytes();
            continue;
        }
        const std::uint64_t moved = port.m_rt->GetMoved();
        if (moved > port.m_accounted) {
            Account(port, moved - port.m_accounted);
            port.m_accounted = moved;
        }
        if (Refused(port)) {
            continue;
        }
        if (missedCycles && !port.m_output.empty()) {
            m_ports.Fail(port, "The JACK server ran a cycle without this program (it was late); "
                               "bytes may have been lost or sent twice.");
            continue;
        }
        if (xrun && port.m_physical && !port.m_output.empty()) {
            m_ports.Fail(port, "The JACK server had an xrun while sending to a hardware port; "
                               "bytes may have been lost or sent twice.");
            continue;
        }
        if (serverGone) {
            // Nothing will ever take the rest: the buffers come back as
            // failed, with what the server did take counted above.
            m_ports.Fail(port, "The JACK server has shut down.");
            continue;
        }
        if (!port.m_remote.empty() && !port.m_output.empty() && !IsLinked(port)) {
            continue; // not yet: bytes to a port with no connection vanish
        }
        if (!port.m_rt->IsFlushing()) {
            PushOutput(port);
        }
    }
}

bool CJackMidiDriver::IsLinked(JackPort& port)
{
    // jack_connect returns before the connection shows on our port.
    if (jack_port_connected(port.m_rt->GetPort()) > 0) {
        port.m_linkSeen = true;
        return true;
    }
    if (port.m_linkSeen && jack_port_by_name(m_client, port.m_remote.c_str()) != nullptr) {
        // A client that dies loses its connections a cycle or more before
        // its ports, both in the one request that removes it, and the
        // server's single request thread answers this request of ours only
        // once that one is done: a port still there then had the connection
        // alone removed. (A client that closes itself asks for the two in
        // turn, so its close can still read as a removed connection.)
        jack_free(jack_get_uuid_for_client_name(m_client, jack_get_client_name(m_client)));
    }
    if (jack_port_by_name(m_client, port.m_remote.c_str()) == nullptr) {
        m_ports.Fail(port, "The port it was connected to is gone.");
    } else if (port.m_linkSeen) {
        m_ports.Fail(port, "The connection to the port was removed.");
    }
    return false;
}

void CJackMidiDriver::Run()
{
    while (!m_stop) {
        timespec until{};
        clock_gettime(CLOCK_REALTIME, &until);
        until.tv_nsec += kIdleWakeNanoseconds;
        if (until.tv_nsec >= 1'000'000'000) {
            until.tv_sec += 1;
            until.tv_nsec -= 1'000'000'000;
        }
        while (sem_timedwait(&m_wake, &until) != 0 && errno == EINTR) {
        }
        while (sem_trywait(&m_wake) == 0) {
        }
        {
            const std::lock_guard lock(m_ports.GetMutex());
            Pump();
        }
        m_ports.Deliver();
    }
}

} // namespace tarvix
