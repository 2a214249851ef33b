#include "cli/CliSupport.h"
#include "cli/commands/DeviceCommands.h"
#include "cli/midi/CliMidiPorts.h"
#include "cli/midi/CliTransferView.h"
#include "cli/midi/ParseSeconds.h"
#include "cli/midi/SignalWatch.h"
#include "io/FileStream.h"
#include "model/Mmt8Memory.h"
#include "model/TextBuilder.h"
#include "transport/transfer/DumpTransfer.h"

#include <optional>

namespace tarvix::cli {

namespace {
using Ending = CCliTransferView::Ending;

class ReceiveCommand final : public ICliCommand {
public:
    const char* Name() const override { return "receive"; }
    const char* Summary() const override
    {
        return "Waits for the device's memory dump and writes the first one that loads, byte for "
               "byte.";
    }
    const char* Details() const override
    {
        static const std::string details =
            std::string("The progress goes to stderr; other SysEx that arrives is listed there\n"
                        "and skipped. Ctrl+C (or SIGTERM) cancels; nothing is written then, nor\n"
                        "when the port goes away or the time-out passes.\n\n") +
            kPortNameHelp + "\n\n" + kPortSettingsHelp;
        return details.c_str();
    }
    std::vector<const char*> PositionalNames() const override { return {}; }
    std::vector<OptionSpec> Options() const override
    {
        return {{"--port", true, "NAME: the port the device sends on", true},
                {"-o", true, "the .syx file to write", true},
                {"--timeout", true, "give up after this many seconds (default: wait)"}};
    }

    int Run(const ParsedArguments& arguments, const CliOutput& output) const override
    {
        std::optional<double> timeout;
        if (arguments.Has("--timeout")) {
            double seconds = 0;
            std::string error;
            if (!ParseSeconds(arguments.Value("--timeout"), "timeout", false, seconds, error))
                return UsageError(*this, error, output);
            timeout = seconds;
        }
        const std::string& path = arguments.Value("-o");
        // A dump that arrives is lost if it cannot be written then: find out
        // before the user starts the device.
        if (std::string error; !CanWriteFileReplacing(path, error)) {
            std::fputs(error.c_str(), output.err);
            return kExitFailure;
        }
        const std::string& port = arguments.Value("--port");
        const CSignalWatch signals;
        CCliMidiPorts ports;
        if (!ports.Open(MidiDirection::Input, port, output.err))
            return kExitFailure;
        CCliTransferView view(output.err, {signals, timeout, [&ports, &port] {
                                               return ports.IsListed(MidiDirection::Input, port);
                                           }});
        CMmt8Memory memory;
        std::vector<std::uint8_t> dump;
        const bool ended = ReceiveDump(ports.Input(), ports.Output(), memory, view, &dump);
        if (const std::uint32_t lost = ports.Input().GetErrorCount(); lost != 0)
            view.ReportMessage(FormatText("%u input buffers were lost or damaged\n", lost));
        if (!ended) {
            view.ReportMessage(EndingMessage(view.GetEnding(), port, timeout.value_or(0)));
            return kExitFailure;
        }
        if (dump.empty()) {
            view.ReportMessage("No dump loaded; nothing was written.\n");
            return kExitFailure;
        }
        std::string error;
        if (!WriteFileReplacing(path, dump.data(), static_cast<std::uint32_t>(dump.size()),
                                error)) {
            view.ReportMessage(error);
            return kExitFailure;
        }
        view.ReportMessage(
            FormatText("Wrote %u bytes to %s\n", static_cast<unsigned>(dump.size()), path.c_str()));
        return kExitSuccess;
    }

private:
    static std::string EndingMessage(Ending ending, const std::string& port, double timeout)
    {
        switch (ending) {
        case Ending::TimedOut:
            return FormatText("No dump received within %g seconds; nothing was written.\n",
                              timeout);
        case Ending::PortGone:
            return FormatText("Port \"%s\" is gone; nothing was written.\n", port.c_str());
        default: return "Cancelled; nothing was written.\n";
        }
    }
};
} // namespace

std::unique_ptr<ICliCommand> MakeReceiveCommand()
{
    return std::make_unique<ReceiveCommand>();
}

} // namespace tarvix::cli
