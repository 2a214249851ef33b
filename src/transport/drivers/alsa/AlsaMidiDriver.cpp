#include "transport/drivers/alsa/AlsaMidiDriver.h"

#include "transport/drivers/SysexEventLength.h"
#include "transport/drivers/alsa/AlsaPortList.h"

#include <alsa/asoundlib.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

namespace tarvix {

namespace {

using Clock = std::chrono::steady_clock;

// The kernel hands incoming SysEx to sequencer clients in pieces of at most
// 256 bytes; outgoing buffers are cut the same way, so that no event needs
// more pool cells than a client has.
constexpr std::size_t kSysexPiece = 256;
// The largest pools the kernel grants (SNDRV_SEQ_MAX_EVENTS), so that a long
// dump is never refused for lack of cells in our client.
constexpr long kPoolCells = 2000;
constexpr std::size_t kInputBufferBytes = 128 * 1024;
// A receiving client with a full pool refuses the event; it is sent again.
constexpr auto kRetryDelay = std::chrono::milliseconds(2);

int MillisecondsUntil(Clock::time_point when, Clock::time_point now)
{
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(when - now).count();
    return static_cast<int>(std::clamp<long long>(wait, 0, 1000));
}

void QuietAlsaError(const char* /*file*/, int /*line*/, const char* /*function*/, int /*err*/,
                    const char* /*fmt*/, ...)
{
}

} // namespace

struct AlsaPort : BufferedMidiPort {
    using BufferedMidiPort::BufferedMidiPort;

    int m_local = -1; // our sequencer port
    // Output subscribed to another client's port: events to a subscription
    // that is gone (the port was deleted) vanish without an error.
    bool m_connected = false;
    snd_seq_addr_t m_remote{};
    Clock::time_point m_retryAt{};
};

CAlsaMidiDriver::CAlsaMidiDriver(std::string clientName) : m_clientName(std::move(clientName)) {}

CAlsaMidiDriver::~CAlsaMidiDriver()
{
    if (m_thread.joinable()) {
        m_stop = true;
        Wake();
        m_thread.join();
    }
    if (m_wakeFd >= 0) {
        close(m_wakeFd);
    }
    if (m_seq != nullptr) {
        snd_seq_close(m_seq); // deletes our ports and their subscriptions
    }
}

bool CAlsaMidiDriver::OpenSequencer()
{
    if (m_seq != nullptr) {
        return true;
    }
    // alsa-lib prints its own line on stderr when /dev/snd/seq is missing;
    // the reason is reported through GetUnavailableReason instead.
    snd_lib_error_set_handler(&QuietAlsaError);
    snd_seq_t* seq = nullptr;
    const int error = snd_seq_open(&seq, "default", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK);
    snd_lib_error_set_handler(nullptr);
    if (error < 0) {
        m_unavailableReason = std::string("Cannot open the ALSA sequencer: ") + snd_strerror(error);
        return false;
    }
    m_wakeFd = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (m_wakeFd < 0) {
        snd_seq_close(seq);
        m_unavailableReason = "Cannot create the ALSA driver's wake-up event.";
        return false;
    }
    snd_seq_set_client_name(seq, m_clientName.c_str());
    snd_seq_set_client_pool_output(seq, kPoolCells);
    snd_seq_set_client_pool_input(seq, kPoolCells);
    snd_seq_set_input_buffer_size(seq, kInputBufferBytes);
    m_seq = seq;
    m_unavailableReason.clear();
    m_thread = std::thread([this] { Run(); });
    return true;
}

std::string CAlsaMidiDriver::GetName() const
{
    return "ALSA";
}

const std::vector<AlsaPortAddress>& CAlsaMidiDriver::Listed(MidiDirection direction)
{
    const std::size_t slot = direction == MidiDirection::Input ? 0 : 1;
    if (!m_listedOnce[slot]) {
        m_listedOnce[slot] = true;
        m_listed[slot] =
            OpenSequencer() ? ListAlsaPorts(m_seq, direction) : std::vector<AlsaPortAddress>{};
    }
    return m_listed[slot];
}

std::uint32_t CAlsaMidiDriver::GetNumDevs(MidiDirection direction)
{
    const std::lock_guard lock(m_ports.GetMutex());
    m_listedOnce[direction == MidiDirection::Input ? 0 : 1] = false; // a fresh look
    return static_cast<std::uint32_t>(Listed(direction).size());
}

MidiResult CAlsaMidiDriver::GetDevName(MidiDirection direction, std::uint32_t index,
                                       std::string& name)
{
    const std::lock_guard lock(m_ports.GetMutex());
    const std::vector<AlsaPortAddress>& listed = Listed(direction);
    if (index >= listed.size()) {
        return kMidiBadDeviceId;
    }
    name = listed[index].name;
    return kMidiNoError;
}

MidiResult CAlsaMidiDriver::Open(MidiDirection direction, std::uint32_t index,
                                 MidiCallback callback, void* instance, MidiHandle& handle)
{
    MidiResult result = kMidiNoError;
    {
        const std::lock_guard lock(m_ports.GetMutex());
        const std::vector<AlsaPortAddress>& listed = Listed(direction);
        if (index >= listed.size()) {
            return kMidiBadDeviceId;
        }
        const AlsaPortAddress remote = listed[index];
        result = OpenPort(direction, direction == MidiDirection::Input ? "in" : "out", &remote,
                          callback, instance, handle);
    }
    m_ports.Deliver();
    return result;
}

MidiResult CAlsaMidiDriver::OpenVirtual(MidiDirection direction, const std::string& portName,
                                        MidiCallback callback, void* instance, MidiHandle& handle)
{
    MidiResult result = kMidiNoError;
    {
        const std::lock_guard lock(m_ports.GetMutex());
        if (!OpenSequencer()) {
            return kMidiNoDriver;
        }
        result = OpenPort(direction, portName, nullptr, callback, instance, handle);
    }
    m_ports.Deliver();
    return result;
}

MidiResult CAlsaMidiDriver::OpenPort(MidiDirection direction, const std::string& portName,
                                     const AlsaPortAddress* remote, MidiCallback callback,
                                     void* instance, MidiHandle& handle)
{
    const bool input = direction == MidiDirection::Input;
    const unsigned int caps = input ? SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE
                                    : SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;
    const int local =
        snd_seq_create_simple_port(m_seq, portName.c_str(), caps,
                                   SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
    if (local < 0) {
        return local == -ENOMEM ? kMidiNoMemory : kMidiError;
    }
    if (remote != nullptr) {
        const int error = input ? snd_seq_connect_from(m_seq, local, remote->client, remote->port)
                                : snd_seq_connect_to(m_seq, local, remote->client, remote->port);
        if (error < 0) {
            snd_seq_delete_simple_port(m_seq, local);
            // The port went away since it was listed, or refuses us.
            return error == -EBUSY ? kMidiAllocated : kMidiBadDeviceId;
        }
    }
    auto port = std::make_unique<AlsaPort>(direction, callback, instance);
    port->m_local = local;
    if (remote != nullptr && !input) {
        port->m_connected = true;
        port->m_remote.client = static_cast<unsigned char>(remote->client);
        port->m_remote.port = static_cast<unsigned char>(remote->port);
    }
    handle = port.get();
    m_ports.Insert(std::move(port));
    return kMidiNoError;
}

void CAlsaMidiDriver::ClosePort(BufferedMidiPort& port)
{
    snd_seq_delete_simple_port(m_seq, static_cast<AlsaPort&>(port).m_local);
}

void CAlsaMidiDriver::OutputQueued(BufferedMidiPort& /*port*/)
{
    Wake();
}

void CAlsaMidiDriver::Wake()
{
    const std::uint64_t one = 1;
    if (m_wakeFd >= 0) {
        [[maybe_unused]] const ssize_t written = write(m_wakeFd, &one, sizeof one);
    }
}

bool CAlsaMidiDriver::ReadInput()
{
    // A bounded number per round, so output gets its turn under a flood.
    for (int events = 0; events < 1000; ++events) {
        snd_seq_event_t* event = nullptr;
        const int result = snd_seq_event_input(m_seq, &event);
        if (result == -EAGAIN) {
            return false;
        }
        if (result == -ENOSPC) {
            // The kernel's queue for us overflowed; those events are gone,
            // how many bytes is not told: at least one on every input.
            for (const auto& open : m_ports.GetPorts()) {
                if (open->m_direction == MidiDirection::Input && open->m_input.IsStarted()) {
                    ++open->m_lostInput;
                }
            }
            continue;
        }
        if (result < 0) {
            snd_seq_drop_input(m_seq);
            return false;
        }
        if (event == nullptr || event->type != SND_SEQ_EVENT_SYSEX) {
            continue; // short messages are not collected
        }
        for (const auto& open : m_ports.GetPorts()) {
            auto& port = static_cast<AlsaPort&>(*open);
            if (port.m_direction == MidiDirection::Input && port.m_local == event->dest.port) {
                // One piece of up to 256 bytes; a SysEx arrives as several
                // events, only the first with F0, and the input queue joins
                // them, filling and returning buffers as the pieces come.
                m_ports.Receive(port, static_cast<const std::uint8_t*>(event->data.ext.ptr),
                                event->data.ext.len);
                break;
            }
        }
    }
    // Events alsa-lib has already read from the kernel wake no poll.
    return snd_seq_event_input_pending(m_seq, 0) > 0;
}

bool CAlsaMidiDriver::IsSubscribed(const AlsaPort& port) const
{
    snd_seq_port_subscribe_t* query = nullptr;
    if (snd_seq_port_subscribe_malloc(&query) < 0) {
        return true; // cannot tell; keep sending
    }
    snd_seq_addr_t sender{};
    sender.client = static_cast<unsigned char>(snd_seq_client_id(m_seq));
    sender.port = static_cast<unsigned char>(port.m_local);
    snd_seq_port_subscribe_set_sender(query, &sender);
    snd_seq_port_subscribe_set_dest(query, &port.m_remote);
    const bool subscribed = snd_seq_get_port_subscription(m_seq, query) >= 0;
    snd_seq_port_subscribe_free(query);
    return subscribed;
}

int CAlsaMidiDriver::SendOutput()
{
    int timeout = -1;
    const auto later = [&timeout](int milliseconds) {
        timeout = timeout < 0 ? milliseconds : std::min(timeout, milliseconds);
    };
    const Clock::time_point now = Clock::now();
    for (const auto& open : m_ports.GetPorts()) {
        auto& port = static_cast<AlsaPort&>(*open);
        if (!port.m_output.empty() && port.m_connected && !IsSubscribed(port)) {
            m_ports.Fail(port, "The port it was connected to is gone.");
            continue;
        }
        while (!port.m_output.empty()) {
            const std::uint8_t* data = nullptr;
            const std::size_t left = CBufferedMidiPorts::PeekOutput(port, data);
            if (left == 0) {
                m_ports.Sent(port, 0);
                continue;
            }
            if (port.m_retryAt > now) {
                later(MillisecondsUntil(port.m_retryAt, now));
                break;
            }
            // The output port hands bytes over no faster than the cable
            // carries them, so a sound card's small buffer keeps up.
            const std::size_t piece = SysexEventLength(data, left, kSysexPiece);
            snd_seq_event_t event;
            snd_seq_ev_clear(&event);
            snd_seq_ev_set_source(&event, static_cast<unsigned char>(port.m_local));
            snd_seq_ev_set_subs(&event);
            snd_seq_ev_set_direct(&event);
            // snd_seq_ev_set_sysex spelled out: the macro does not build
            // cleanly with our sign-conversion warnings.
            event.type = SND_SEQ_EVENT_SYSEX;
            event.flags = static_cast<unsigned char>(
                (event.flags & ~static_cast<unsigned int>(SND_SEQ_EVENT_LENGTH_MASK)) |
                SND_SEQ_EVENT_LENGTH_VARIABLE);
            event.data.ext.len = static_cast<unsigned int>(piece);
            event.data.ext.ptr = const_cast<std::uint8_t*>(data);
            const int result = snd_seq_event_output_direct(m_seq, &event);
            if (result == -EAGAIN || result == -ENOMEM) {
                port.m_retryAt = now + kRetryDelay;
                later(MillisecondsUntil(port.m_retryAt, now));
                break;
            }
            if (result < 0) {
                // Any other failure (the receiver went away) would fail
                // again: the port stops, and nothing it did not write counts
                // as sent.
                m_ports.Fail(port, std::string("Writing to the ALSA sequencer failed: ") +
                                       snd_strerror(result));
                break;
            }
            m_ports.Sent(port, piece);
        }
    }
    return timeout;
}

void CAlsaMidiDriver::Run()
{
    std::vector<pollfd> fds;
    {
        const std::lock_guard lock(m_ports.GetMutex());
        const int count = snd_seq_poll_descriptors_count(m_seq, POLLIN);
        fds.resize(static_cast<std::size_t>(std::max(count, 0)) + 1);
        snd_seq_poll_descriptors(m_seq, fds.data() + 1, static_cast<unsigned int>(count), POLLIN);
    }
    fds[0] = pollfd{m_wakeFd, POLLIN, 0};
    while (!m_stop) {
        int timeout = -1;
        {
            const std::lock_guard lock(m_ports.GetMutex());
            const bool more = ReadInput();
            timeout = SendOutput();
            if (more) {
                timeout = 0;
            }
        }
        m_ports.Deliver();
        if (poll(fds.data(), fds.size(), timeout) > 0 && (fds[0].revents & POLLIN) != 0) {
            std::uint64_t count = 0;
            [[maybe_unused]] const ssize_t got = read(m_wakeFd, &count, sizeof count);
        }
    }
}

} // namespace tarvix
