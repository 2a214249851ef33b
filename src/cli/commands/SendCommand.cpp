#include "cli/CliSupport.h"
#include "cli/commands/DeviceCommands.h"
#include "cli/midi/CliMidiPorts.h"
#include "cli/midi/CliTransferView.h"
#include "cli/midi/SignalWatch.h"
#include "model/Mmt8Memory.h"
#include "model/TextBuilder.h"
#include "transport/transfer/DumpTransfer.h"

#include <chrono>

namespace tarvix::cli {

namespace {
using Ending = CCliTransferView::Ending;

class SendCommand final : public ICliCommand {
public:
    const char* Name() const override { return "send"; }
    const char* Summary() const override
    {
        return "Sends the document of FILE.syx to the device as its memory dump.";
    }
    const char* Details() const override
    {
        static const std::string details =
            std::string("The progress goes to stderr. Ctrl+C (or SIGTERM) stops the send; the\n"
                        "device may then have part of it.\n\n") +
            kPortNameHelp + "\n\n" + kPortSettingsHelp;
        return details.c_str();
    }
    std::vector<const char*> PositionalNames() const override { return {"FILE.syx"}; }
    std::vector<OptionSpec> Options() const override
    {
        return {{"--port", true, "NAME: the port the device listens on", true}};
    }

    int Run(const ParsedArguments& arguments, const CliOutput& output) const override
    {
        CMmt8Memory memory;
        if (!LoadDocument(memory, arguments.positionals[0], output))
            return kExitFailure;
        const std::string& port = arguments.Value("--port");
        const CSignalWatch signals;
        CCliMidiPorts ports;
        if (!ports.Open(MidiDirection::Output, port, output.err))
            return kExitFailure;
        const auto isListed = [&ports, &port] {
            return ports.IsListed(MidiDirection::Output, port);
        };
        CCliTransferView view(output.err, {signals, std::nullopt, isListed});
        const auto start = std::chrono::steady_clock::now();
        const bool sent = SendDump(ports.Input(), ports.Output(), memory, view);
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        // Bytes sent to a port that has gone leave without an error.
        const Ending ending = sent && !isListed() ? Ending::PortGone : view.GetEnding();
        if (ending == Ending::PortGone) {
            view.ReportMessage(
                FormatText("Port \"%s\" is gone; the device may have received part of the dump.\n",
                           port.c_str()));
            return kExitFailure;
        }
        if (!sent) {
            if (ending == Ending::Cancelled)
                view.ReportMessage("Cancelled; the device may have received part of the dump.\n");
            return kExitFailure;
        }
        view.ReportMessage(
            FormatText("Sent the dump to %s in %.2f s\n", port.c_str(), took.count()));
        return kExitSuccess;
    }
};
} // namespace

std::unique_ptr<ICliCommand> MakeSendCommand()
{
    return std::make_unique<SendCommand>();
}

} // namespace tarvix::cli
