#include "cli/commands/MidiFileCommands.h"
#include "midifile/MidiDumpSink.h"
#include "midifile/MidiFileDump.h"
#include "midifile/MidiFileException.h"

#include <cstdio>
#include <string_view>

namespace tarvix::cli {

namespace {
class DumpCommand final : public ICliCommand {
public:
    const char* Name() const override { return "dump"; }
    const char* Summary() const override
    {
        return "Prints the MIDI file dump report of a Standard MIDI File.";
    }
    std::vector<const char*> PositionalNames() const override { return {"FILE.mid"}; }

    int Run(const ParsedArguments& arguments, const CliOutput& output) const override
    {
        // The report streams out as it is made; the file is read whole
        // before its first line, so a file that fails prints nothing on stdout.
        // fwrite: text events may hold any byte.
        CMidiDumpSink sink(LineEnds::Lf);
        sink.StreamTo([&output](std::string_view text) {
            std::fwrite(text.data(), 1, text.size(), output.out);
        });
        try {
            DumpMidiFile(arguments.positionals[0], sink);
        } catch (const CMidiFileException& exception) {
            std::fputs(exception.GetMessage().c_str(), output.err);
            return kExitFailure;
        }
        sink.Flush();
        return kExitSuccess;
    }
};
} // namespace

std::unique_ptr<ICliCommand> MakeDumpCommand()
{
    return std::make_unique<DumpCommand>();
}

} // namespace tarvix::cli
