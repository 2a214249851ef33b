#include "cli/CliSupport.h"
#include "cli/commands/DocumentCommands.h"
#include "model/Mmt8Memory.h"

namespace tarvix::cli {

namespace {
class MemoryCommand final : public ICliCommand {
public:
    const char* Name() const override { return "memory"; }
    const char* Summary() const override
    {
        return "Prints how much of the device's 64256 bytes the dump's document uses.";
    }
    std::vector<const char*> PositionalNames() const override { return {"FILE.syx"}; }

    int Run(const ParsedArguments& arguments, const CliOutput& output) const override
    {
        CMmt8Memory memory;
        if (!LoadDocument(memory, arguments.positionals[0], output))
            return kExitFailure;
        std::fprintf(output.out, "%s\n", GetMemoryText(memory.GetMemorySize()).c_str());
        return kExitSuccess;
    }
};
} // namespace

std::unique_ptr<ICliCommand> MakeMemoryCommand()
{
    return std::make_unique<MemoryCommand>();
}

} // namespace tarvix::cli
