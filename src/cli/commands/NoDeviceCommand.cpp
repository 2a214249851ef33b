#include "cli/commands/DeviceCommandBase.h"
#include "cli/commands/DeviceCommands.h"

#include <cstdio>

namespace tarvix::cli {

namespace {
// The simulated device's ports are virtual ports, which the multimedia MIDI
// service cannot make: the command is there, to say so.
constexpr const char* kUnavailable = "not available on Windows: the simulated device needs MIDI "
                                     "ports of its own, which WinMM cannot give a program.";

class NoDeviceCommand final : public CDeviceCommandBase {
public:
    const char* Details() const override { return kUnavailable; }

    int Run(const ParsedArguments& /*arguments*/, const CliOutput& output) const override
    {
        std::fprintf(output.err, "tarvix-cli %s: %s\n", Name(), kUnavailable);
        return kExitFailure;
    }
};
} // namespace

std::unique_ptr<ICliCommand> MakeDeviceCommand()
{
    return std::make_unique<NoDeviceCommand>();
}

} // namespace tarvix::cli
