#include "cli/CliCommand.h"
#include "cli/commands/DeviceCommands.h"
#include "cli/commands/DocumentCommands.h"
#include "cli/commands/MidiFileCommands.h"

namespace tarvix::cli {

const std::vector<std::unique_ptr<ICliCommand>>& AllCommands()
{
    static const std::vector<std::unique_ptr<ICliCommand>> commands = [] {
        std::vector<std::unique_ptr<ICliCommand>> all;
        all.push_back(MakeMemoryCommand());
        all.push_back(MakePartsCommand());
        all.push_back(MakeTracksCommand());
        all.push_back(MakeSongsCommand());
        all.push_back(MakeStepsCommand());
        all.push_back(MakeListCommand());
        all.push_back(MakeNewCommand());
        all.push_back(MakeRewriteCommand());
        all.push_back(MakeDumpCommand());
        all.push_back(MakeImportCommand());
        all.push_back(MakeExportCommand());
        all.push_back(MakePortsCommand());
        all.push_back(MakeReceiveCommand());
        all.push_back(MakeSendCommand());
        all.push_back(MakeDeviceCommand());
        return all;
    }();
    return commands;
}

} // namespace tarvix::cli
