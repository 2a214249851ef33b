#include "cli/CliSupport.h"
#include "cli/commands/DocumentCommands.h"
#include "model/Mmt8Memory.h"
#include "model/TrackListing.h"

namespace tarvix::cli {

namespace {
class ListTrackCommand final : public ICliCommand {
public:
    const char* Name() const override { return "list"; }
    const char* Summary() const override
    {
        return "Prints the events of one track as the track dump view lists them.";
    }
    std::vector<const char*> PositionalNames() const override
    {
        return {"FILE.syx", "PART", "TRACK"};
    }

    int Run(const ParsedArguments& arguments, const CliOutput& output) const override
    {
        int part = 0;
        int track = 0;
        std::string error;
        if (!ParseNumber(arguments.positionals[1], "part", 0, 99, part, error) ||
            !ParseNumber(arguments.positionals[2], "track", 1, 8, track, error))
            return UsageError(*this, error, output);
        CMmt8Memory memory;
        if (!LoadDocument(memory, arguments.positionals[0], output))
            return kExitFailure;
        const auto& events = memory.Part(part).tracks[static_cast<std::size_t>(track - 1)];
        std::fputs(ListTrack(events, LineEnds::Lf).c_str(), output.out);
        return kExitSuccess;
    }
};
} // namespace

std::unique_ptr<ICliCommand> MakeListCommand()
{
    return std::make_unique<ListTrackCommand>();
}

} // namespace tarvix::cli
