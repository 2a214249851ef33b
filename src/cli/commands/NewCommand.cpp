#include "cli/CliSupport.h"
#include "cli/commands/DocumentCommands.h"
#include "model/Mmt8Memory.h"

namespace tarvix::cli {

namespace {
class NewCommand final : public ICliCommand {
public:
    const char* Name() const override { return "new"; }
    const char* Summary() const override
    {
        return "Writes the memory of an empty device as a dump.";
    }
    std::vector<const char*> PositionalNames() const override { return {}; }
    std::vector<OptionSpec> Options() const override
    {
        return {{"-o", true, "the .syx file to write", true}};
    }

    int Run(const ParsedArguments& arguments, const CliOutput& output) const override
    {
        const CMmt8Memory memory;
        return SaveDocument(memory, arguments.Value("-o"), output) ? kExitSuccess : kExitFailure;
    }
};
} // namespace

std::unique_ptr<ICliCommand> MakeNewCommand()
{
    return std::make_unique<NewCommand>();
}

} // namespace tarvix::cli
