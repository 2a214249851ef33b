#include "cli/CliSupport.h"
#include "cli/commands/DocumentCommands.h"
#include "model/Mmt8Memory.h"

namespace tarvix::cli {

namespace {
class RewriteCommand final : public ICliCommand {
public:
    const char* Name() const override { return "rewrite"; }
    const char* Summary() const override
    {
        return "Loads a dump and writes its document as a fresh dump, records laid out anew.";
    }
    std::vector<const char*> PositionalNames() const override { return {"FILE.syx"}; }
    std::vector<OptionSpec> Options() const override
    {
        return {{"-o", true, "the .syx file to write (may be FILE.syx itself)", true}};
    }

    int Run(const ParsedArguments& arguments, const CliOutput& output) const override
    {
        CMmt8Memory memory;
        if (!LoadDocument(memory, arguments.positionals[0], output))
            return kExitFailure;
        return SaveDocument(memory, arguments.Value("-o"), output) ? kExitSuccess : kExitFailure;
    }
};
} // namespace

std::unique_ptr<ICliCommand> MakeRewriteCommand()
{
    return std::make_unique<RewriteCommand>();
}

} // namespace tarvix::cli
