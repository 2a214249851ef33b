#include "cli/CliSupport.h"
#include "cli/commands/DeviceCommandBase.h"
#include "cli/commands/DeviceCommands.h"
#include "cli/midi/ParseSeconds.h"
#include "cli/midi/SignalWatch.h"
#include "io/FileStream.h"
#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "model/TextBuilder.h"
#include "simulator/SimulatedMmt8.h"
#include "simulator/SimulatorPorts.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>

namespace tarvix::cli {

namespace {
// How soon the device notices a request, a signal or a received dump.
constexpr int kPollMilliseconds = 20;
constexpr double kNever = -1;

bool ReadMemory(const std::string& path, std::vector<std::uint8_t>& memory, std::string& error)
{
    CMappedFileStream file;
    if (!file.Open(path, error, platform::FileAccess::Read, platform::FileShare::Read,
                   platform::FileDisposition::OpenExisting))
        return false;
    memory.assign(file.GetView(), file.GetView() + file.GetFileSize());
    file.Close();
    return CSimulatedMmt8::CheckMemory(memory, error);
}

// Enter on standard input asks for a send; at its end it is no longer watched.
class EnterKey {
public:
    // Waits up to the time given; true when at least one Enter arrived.
    bool Wait(int milliseconds)
    {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        if (!m_open) {
            poll(nullptr, 0, milliseconds);
            return false;
        }
        if (poll(&input, 1, milliseconds) <= 0)
            return false;
        char bytes[256];
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) {
            m_open = count < 0 && errno == EINTR;
            return false;
        }
        return std::find(bytes, bytes + count, '\n') != bytes + count;
    }

private:
    bool m_open = true;
};

class DeviceCommand final : public CDeviceCommandBase {
public:
    int Run(const ParsedArguments& arguments, const CliOutput& output) const override
    {
        const std::string name = arguments.Has("--name") ? arguments.Value("--name") : kDefaultName;
        if (name.empty() || name.find(':') != std::string::npos)
            return UsageError(*this, "invalid name '" + name + "' (no ':', not empty)", output);
        double sendAfter = kNever;
        if (arguments.Has("--send-after")) {
            std::string error;
            if (!ParseSeconds(arguments.Value("--send-after"), "delay", true, sendAfter, error))
                return UsageError(*this, error, output);
        }
        std::size_t inputBuffer = CSimulatedMmt8::kDefaultInputBuffer;
        if (arguments.Has("--input-buffer")) {
            const std::string& text = arguments.Value("--input-buffer");
            char* end = nullptr;
            errno = 0;
            const unsigned long long bytes = std::strtoull(text.c_str(), &end, 10);
            if (text.empty() || *end != '\0' || errno != 0 || bytes < 1 || bytes > 1u << 30 ||
                text.front() == '-')
                return UsageError(*this, "invalid input buffer size '" + text + "'", output);
            inputBuffer = static_cast<std::size_t>(bytes);
        }
        std::vector<std::uint8_t> memory;
        std::string error;
        if (arguments.Has("--memory") ? !ReadMemory(arguments.Value("--memory"), memory, error)
                                      : !BuildDump(CMmt8Memory(), memory, error)) {
            std::fputs(error.c_str(), output.err);
            return kExitFailure;
        }

        CSignalWatch signals(true);
        // The device goes before the systems its ports are on.
        std::vector<SimulatorPorts> backends = CreateSimulatorPorts(name);
        CSimulatedMmt8::Options options;
        options.wireSpeed = arguments.Has("--wire-speed");
        options.inputBuffer = inputBuffer;
        options.receivedPath = arguments.Has("--received") ? arguments.Value("--received") : "";
        const auto say = [&output](const std::string& line) {
            std::fprintf(output.out, "%s\n", line.c_str());
            std::fflush(output.out);
        };
        CSimulatedMmt8 device(std::move(memory), options, say);
        if (!Attach(device, backends, output))
            return kExitFailure;
        say(FormatText("Press Enter, or send SIGUSR1 to process %d, to send the memory",
                       static_cast<int>(getpid())));

        const auto start = std::chrono::steady_clock::now();
        EnterKey enter;
        while (!signals.IsStopRequested()) {
            bool send = enter.Wait(kPollMilliseconds);
            send = signals.TakeSendRequest() || send;
            const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
            if (sendAfter != kNever && elapsed.count() >= sendAfter) {
                sendAfter = kNever;
                send = true;
            }
            if (send && !device.RequestSend())
                say("Already sending");
            device.Poll();
        }
        device.Poll();
        return kExitSuccess;
    }

private:
    // Attaches to every running system; says which ports are whose, and
    // why a system was left out.
    static bool Attach(CSimulatedMmt8& device, std::vector<SimulatorPorts>& backends,
                       const CliOutput& output)
    {
        bool any = false;
        std::string reasons;
        for (SimulatorPorts& backend : backends) {
            std::string error;
            if (device.Attach(*backend.ports, SimulatorPorts::kInputPort,
                              SimulatorPorts::kOutputPort, error)) {
                std::fprintf(output.out, "Listening on \"%s\", sending on \"%s\"\n",
                             backend.listedName(SimulatorPorts::kInputPort).c_str(),
                             backend.listedName(SimulatorPorts::kOutputPort).c_str());
                any = true;
                continue;
            }
            const std::string reason = backend.system->GetUnavailableReason();
            reasons += reason.empty() ? error : backend.system->GetName() + ": " + reason + "\n";
        }
        std::fputs(reasons.c_str(), output.err);
        if (!any && backends.empty())
            std::fputs("No MIDI system is built into this program.\n", output.err);
        std::fflush(output.out);
        return any;
    }
};
} // namespace

std::unique_ptr<ICliCommand> MakeDeviceCommand()
{
    return std::make_unique<DeviceCommand>();
}

} // namespace tarvix::cli
