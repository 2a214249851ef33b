#include "cli/CliSupport.h"
#include "cli/SelectionArguments.h"
#include "cli/commands/MidiFileCommands.h"
#include "midifile/MidiExport.h"
#include "model/Mmt8Memory.h"

namespace tarvix::cli {

namespace {
class ExportCommand final : public CliCommand {
public:
    const char* Name() const override { return "export"; }
    const char* Summary() const override
    {
        return "Exports parts or songs into a Standard MIDI File, as the editor's Export does.";
    }
    std::vector<const char*> PositionalNames() const override { return {"FILE.syx"}; }
    std::vector<OptionSpec> Options() const override
    {
        std::vector<OptionSpec> options = {{"-o", true, "the .mid file to write", true}};
        for (const OptionSpec& option : SelectionOptions())
            options.push_back(option);
        return options;
    }

    int Run(const ParsedArguments& arguments, const CliOutput& output) const override
    {
        MidiSelection selection;
        std::string error;
        if (!ParseSelection(arguments, selection, error))
            return UsageError(*this, error, output);
        CMmt8Memory memory;
        if (!LoadDocument(memory, arguments.positionals[0], output))
            return kExitFailure;
        if (!CheckSelectedSteps(memory, selection, error))
            return UsageError(*this, error, output);
        if (!RunExport(memory, selection, arguments.Value("-o"), error)) {
            std::fputs(error.c_str(), output.err);
            return kExitFailure;
        }
        return kExitSuccess;
    }
};
} // namespace

std::unique_ptr<CliCommand> MakeExportCommand()
{
    return std::make_unique<ExportCommand>();
}

} // namespace tarvix::cli
