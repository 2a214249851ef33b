#include "cli/commands/DeviceCommands.h"
#include "transport/drivers/SystemMidiService.h"

#include <cstdio>

namespace tarvix::cli {

namespace {
class PortsCommand final : public ICliCommand {
public:
    const char* Name() const override { return "ports"; }
    const char* Summary() const override
    {
        return "Lists the MIDI ports, one a line: in or out, TAB, the name that --port takes.";
    }
    const char* Details() const override
    {
        return "'in' ports are those to receive from, 'out' ports those to send to. A MIDI\n"
               "system that is not running lists no ports; why is printed on stderr.";
    }
    std::vector<const char*> PositionalNames() const override { return {}; }

    int Run(const ParsedArguments& /*arguments*/, const CliOutput& output) const override
    {
        const auto driver = CreateSystemMidiService();
        for (const MidiDirection direction : {MidiDirection::Input, MidiDirection::Output}) {
            const std::uint32_t count = driver->GetNumDevs(direction);
            for (std::uint32_t index = 0; index < count; ++index) {
                std::string name;
                if (driver->GetDevName(direction, index, name) == kMidiNoError)
                    std::fprintf(output.out, "%s\t%s\n",
                                 direction == MidiDirection::Input ? "in" : "out", name.c_str());
            }
        }
        const std::string reasons = driver->GetUnavailableReason();
        if (!reasons.empty())
            std::fprintf(output.err, "%s\n", reasons.c_str());
        return kExitSuccess;
    }
};
} // namespace

std::unique_ptr<ICliCommand> MakePortsCommand()
{
    return std::make_unique<PortsCommand>();
}

} // namespace tarvix::cli
