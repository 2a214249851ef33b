// tarvix-rawmidi-standin: an MMT-8 behind a MIDI interface, as seen from a
// raw MIDI device (/dev/snd/midiC*D*, such as one of snd-virmidi's, whose
// other end is a sequencer port). It plays a dump out at cable speed and
// takes input through a bounded buffer drained at cable speed, so a sender
// that runs ahead of the cable loses bytes here as it would at the device.
//
//   tarvix-rawmidi-standin DEVICE [--memory FILE] [--received FILE] [--buffer BYTES]
//
// Prints "Opened DEVICE" once ready. A line "send" on standard input plays
// FILE ("Sent N bytes" at the end). At the end of standard input it takes
// what the device still holds, writes every byte that reached it to the
// received FILE, prints "Received N bytes, lost M bytes" and exits 0.
#include "transport/drivers/CablePacer.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <time.h>
#include <unistd.h>

#include <sound/asound.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using tarvix::CCablePacer;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kDefaultBuffer = 4096;
// How far the device's own output may run ahead of its cable: its UART
// sends exactly at cable speed; this only spares waking up for every byte.
// A late wake-up is made up for, as a real device never pauses mid-dump.
constexpr std::size_t kOutputLead = 32;
constexpr auto kOutputCatchUp = std::chrono::seconds(1);

// What a MIDI interface does with bytes from a fast computer: they wait in
// its buffer and leave at cable speed; a byte that finds it full is lost.
class InterfaceInput {
public:
    explicit InterfaceInput(std::size_t buffer) : m_buffer(buffer) {}

    void Arrive(const std::uint8_t* data, std::size_t count)
    {
        const std::size_t kept = m_buffer.Accept(count);
        m_received.insert(m_received.end(), data, data + kept);
        m_lost += count - kept;
    }
    const Bytes& Received() const { return m_received; }
    std::size_t Lost() const { return m_lost; }

private:
    CCablePacer m_buffer;
    Bytes m_received;
    std::size_t m_lost = 0;
};

struct Options {
    std::string device;
    std::string memoryPath;
    std::string receivedPath;
    std::size_t buffer = kDefaultBuffer;
};

[[noreturn]] void Fail(const std::string& text)
{
    std::fprintf(stderr, "tarvix-rawmidi-standin: %s\n", text.c_str());
    std::exit(1);
}

void Say(const std::string& text)
{
    std::printf("%s\n", text.c_str());
    std::fflush(stdout);
}

Options ParseOptions(int argc, char** argv)
{
    Options options;
    for (int index = 1; index < argc; ++index) {
        const std::string word = argv[index];
        const bool hasValue = index + 1 < argc;
        if (word == "--memory" && hasValue) {
            options.memoryPath = argv[++index];
        } else if (word == "--received" && hasValue) {
            options.receivedPath = argv[++index];
        } else if (word == "--buffer" && hasValue) {
            options.buffer = std::strtoul(argv[++index], nullptr, 10);
            if (options.buffer == 0) {
                Fail("--buffer needs a number of bytes");
            }
        } else if (options.device.empty() && word.rfind("--", 0) != 0) {
            options.device = word;
        } else {
            Fail("usage: tarvix-rawmidi-standin DEVICE [--memory FILE] [--received FILE] "
                 "[--buffer BYTES]");
        }
    }
    if (options.device.empty()) {
        Fail("no raw MIDI device named");
    }
    return options;
}

Bytes ReadFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        Fail("cannot read " + path);
    }
    return Bytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// Bytes the kernel dropped because its own buffer of the raw device was full.
std::size_t KernelOverruns(int fd)
{
    snd_rawmidi_status status{};
    status.stream = SNDRV_RAWMIDI_STREAM_INPUT;
    return ioctl(fd, SNDRV_RAWMIDI_IOCTL_STATUS, &status) == 0 ? status.xruns : 0;
}

// Everything the device holds for us now; false when it is gone.
bool ReadAvailable(int fd, InterfaceInput& input)
{
    std::uint8_t bytes[1024];
    for (;;) {
        const ssize_t count = read(fd, bytes, sizeof bytes);
        if (count > 0) {
            input.Arrive(bytes, static_cast<std::size_t>(count));
            continue;
        }
        return count < 0 && (errno == EAGAIN || errno == EINTR);
    }
}

// The dump goes out no faster than the cable carries it.
class CableOutput {
public:
    void Start(Bytes bytes)
    {
        m_bytes = std::move(bytes);
        m_written = 0;
        m_cable.Restart();
    }
    bool IsSending() const { return m_written < m_bytes.size(); }
    std::size_t Size() const { return m_bytes.size(); }

    // False when the device refuses the bytes.
    bool WriteDue(int fd)
    {
        const std::size_t due = std::min(m_cable.GetAllowance(), m_bytes.size() - m_written);
        if (due == 0) {
            return true;
        }
        const ssize_t count = write(fd, m_bytes.data() + m_written, due);
        if (count < 0) {
            return errno == EAGAIN || errno == EINTR;
        }
        m_cable.Hand(static_cast<std::size_t>(count));
        m_written += static_cast<std::size_t>(count);
        return true;
    }

private:
    CCablePacer m_cable{kOutputLead, {}, kOutputCatchUp};
    Bytes m_bytes;
    std::size_t m_written = 0;
};

} // namespace

int main(int argc, char** argv)
{
    const Options options = ParseOptions(argc, argv);
    const Bytes memory = options.memoryPath.empty() ? Bytes{} : ReadFile(options.memoryPath);
    const int fd = open(options.device.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        Fail("cannot open " + options.device + ": " + std::strerror(errno));
    }
    // snd-virmidi passes bytes on to a raw device only once it is read
    // (or polled); so it is, before anyone is told to send.
    InterfaceInput input(options.buffer);
    if (!ReadAvailable(fd, input)) {
        Fail(options.device + " is gone");
    }
    Say("Opened " + options.device);

    CableOutput output;
    bool commandsOpen = true;
    std::string command;
    bool toldOverflow = false;
    while (commandsOpen || output.IsSending()) {
        pollfd fds[2] = {{fd, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
        poll(fds, commandsOpen ? 2 : 1, output.IsSending() ? 2 : 50);
        if (!ReadAvailable(fd, input) || (fds[0].revents & (POLLERR | POLLHUP)) != 0) {
            Fail(options.device + " is gone");
        }
        if (input.Lost() > 0 && !toldOverflow) {
            toldOverflow = true;
            Say("Input buffer overflowed; bytes are being lost");
        }
        if (output.IsSending()) {
            if (!output.WriteDue(fd)) {
                Fail(std::string("cannot write to ") + options.device + ": " +
                     std::strerror(errno));
            }
            if (!output.IsSending()) {
                Say("Sent " + std::to_string(output.Size()) + " bytes");
            }
        }
        if (commandsOpen && (fds[1].revents & (POLLIN | POLLHUP)) != 0) {
            char bytes[256];
            const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
            commandsOpen = count > 0 || (count < 0 && errno == EINTR);
            for (ssize_t index = 0; index < count; ++index) {
                if (bytes[index] != '\n') {
                    command += bytes[index];
                    continue;
                }
                if (command == "send" && !output.IsSending()) {
                    output.Start(memory);
                }
                command.clear();
            }
        }
    }

    // Whatever is still on its way in was sent before the end was asked for.
    if (!ReadAvailable(fd, input)) {
        Fail(options.device + " is gone");
    }
    const std::size_t lost = input.Lost() + KernelOverruns(fd);
    close(fd);
    const Bytes& received = input.Received();
    if (!options.receivedPath.empty()) {
        std::ofstream file(options.receivedPath, std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(received.data()),
                   static_cast<std::streamsize>(received.size()));
        if (!file) {
            Fail("cannot write " + options.receivedPath);
        }
    }
    Say("Received " + std::to_string(received.size()) + " bytes, lost " + std::to_string(lost) +
        " bytes");
    return 0;
}
