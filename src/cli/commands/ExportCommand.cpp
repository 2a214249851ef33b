#include "cli/CliSupport.h"
#include "cli/SelectionArguments.h"
#include "cli/commands/MidiFileCommands.h"
#include "midifile/MidiExport.h"
#include "model/Mmt8Memory.h"

namespace tarvix::cli {

namespace {
class ExportCommand final : public ICliCommand {
public:
    const char* Name() const override { return "export"; }
    const char* Summary() const override
    {
        return "Exports parts or songs into a Standard MIDI File, as the editor's Export does.";
    }
    std::vector<const char*> PositionalNames() const override { return {"FILE.syx"}; }
    std::vector<OptionSpec> Options() const override
    {
        return WithSelectionOptions(
            {{"-o", true, "the .mid file to write", true},
             {"--tempo", true,
              "beats per minute (20-255) instead of each song's own, or 120 for parts"}});
    }

    int Run(const ParsedArguments& arguments, const CliOutput& output) const override
    {
        MidiSelection selection;
        std::string error;
        if (!ParseSelection(arguments, selection, error))
            return UsageError(*this, error, output);
        MidiExportOptions options;
        if (arguments.Has("--tempo")) {
            int tempo = 0;
            if (!ParseNumber(arguments.Value("--tempo"), "tempo", static_cast<int>(kMinTempo),
                             static_cast<int>(kMaxTempo), tempo, error))
                return UsageError(*this, error, output);
            options.tempo = static_cast<std::uint32_t>(tempo);
        }
        CMmt8Memory memory;
        if (const int loaded =
                LoadSelectedDocument(*this, arguments.positionals[0], selection, memory, output);
            loaded != kExitSuccess)
            return loaded;
        if (!RunExport(memory, selection, arguments.Value("-o"), error, options)) {
            std::fputs(error.c_str(), output.err);
            return kExitFailure;
        }
        return kExitSuccess;
    }
};
} // namespace

std::unique_ptr<ICliCommand> MakeExportCommand()
{
    return std::make_unique<ExportCommand>();
}

} // namespace tarvix::cli
