#include "cli/CliSupport.h"
#include "cli/SelectionArguments.h"
#include "cli/commands/MidiFileCommands.h"
#include "midifile/ImportRequest.h"
#include "midifile/ImportTrackList.h"
#include "midifile/MidiFileException.h"
#include "midifile/MidiImport.h"
#include "model/Mmt8Memory.h"

#include <cstdio>

namespace tarvix::cli {

namespace {

constexpr int kMostMidiTracks = 65535;

// Unset flags keep the defaults, never the user's stored settings, so that
// a script gives the same result on every machine.
MidiImportOptions OptionsOf(const ParsedArguments& arguments)
{
    MidiImportOptions options;
    options.importAftertouch = arguments.Has("--aftertouch") ? 1 : options.importAftertouch;
    options.importSysex = arguments.Has("--sysex") ? 1 : options.importSysex;
    options.markersAsParts = arguments.Has("--no-markers") ? 0 : options.markersAsParts;
    options.startAtZero = arguments.Has("--zero-start") ? 1 : options.startAtZero;
    options.ignoreChannel = arguments.Has("--ignore-channel") ? 1 : options.ignoreChannel;
    options.explodeType0 = arguments.Has("--no-explode") ? 0 : options.explodeType0;
    return options;
}

void PrintRows(const CMidiFile& file, const std::vector<bool>& ticks, const CliOutput& output)
{
    const auto columns = GetImportColumns();
    std::string line;
    for (const ImportColumnInfo& column : columns)
        line += (line.empty() ? "" : "\t") + std::string(column.title);
    std::fprintf(output.out, "%s\n", line.c_str());
    for (std::size_t row = 0; row < ticks.size(); ++row) {
        line = ticks[row] ? "[x]" : "[ ]";
        for (const auto column :
             {ImportColumn::MidiTrack, ImportColumn::Mmt8Track, ImportColumn::MidiEvents})
            line += "\t" + GetImportCellText(file, row, column);
        std::fprintf(output.out, "%s\n", line.c_str());
    }
}

class ImportCommand final : public ICliCommand {
public:
    const char* Name() const override { return "import"; }
    const char* Summary() const override
    {
        return "Imports the tracks of a Standard MIDI File into the selected parts or songs, "
               "as the editor's Import does, and writes the document as a dump.";
    }
    std::vector<const char*> PositionalNames() const override { return {"FILE.syx", "FILE.mid"}; }
    std::vector<OptionSpec> Options() const override
    {
        std::vector<OptionSpec> options =
            WithSelectionOptions({{"-o", true, "the .syx file to write (not needed with --list)"}});
        options.insert(
            options.end(),
            {
                {"--aftertouch", false, "import channel aftertouch events"},
                {"--sysex", false, "import SysEx events"},
                {"--no-markers", false, "do not cut the file into parts at its markers"},
                {"--zero-start", false, "move the first event to the start of the part"},
                {"--ignore-channel", false, "ignore the tracks' MIDI channel prefix events"},
                {"--no-explode", false, "keep a format-0 file as one track"},
                {"--midi-tracks", true, "tick exactly these MIDI tracks, from 1 (1,3)"},
                {"--list", false, "print the import dialog's rows and write nothing"},
                {"--allow-over-capacity", false,
                 "write the result even when it is more than the device's memory holds"},
            });
        return options;
    }

    int Run(const ParsedArguments& arguments, const CliOutput& output) const override
    {
        MidiSelection selection;
        std::string error;
        if (!ParseSelection(arguments, selection, error))
            return UsageError(*this, error, output);
        const bool listOnly = arguments.Has("--list");
        if (!listOnly && !arguments.Has("-o"))
            return UsageError(*this, "option '-o' is required", output);
        std::vector<int> ticked;
        if (arguments.Has("--midi-tracks") &&
            !ParseNumberList(arguments.Value("--midi-tracks"), "MIDI track", 1, kMostMidiTracks,
                             ticked, error))
            return UsageError(*this, error, output);

        CMmt8Memory memory;
        if (const int loaded =
                LoadSelectedDocument(*this, arguments.positionals[0], selection, memory, output);
            loaded != kExitSuccess)
            return loaded;
        CMidiImport request;
        request.sourcePath = arguments.positionals[1];
        request.options = OptionsOf(arguments);
        if (!BuildImportRequest(memory, selection, request, error)) {
            std::fputs(error.c_str(), output.err);
            return kExitFailure;
        }
        // The whole file is read before the document changes.
        try {
            LoadImportFile(request);
        } catch (const CMidiFileException& exception) {
            std::fputs(exception.GetMessage().c_str(), output.err);
            return kExitFailure;
        }

        std::vector<bool> ticks = GetInitialTicks(request.file);
        if (arguments.Has("--midi-tracks")) {
            ticks.assign(ticks.size(), false);
            for (const int track : ticked) {
                if (static_cast<std::size_t>(track) > ticks.size())
                    return UsageError(*this,
                                      "invalid MIDI track '" + std::to_string(track) +
                                          "' (the file has " + std::to_string(ticks.size()) +
                                          " tracks)",
                                      output);
                ticks[static_cast<std::size_t>(track - 1)] = true;
            }
        }
        AssignDeviceTracks(request.file, ticks, request.trackMask);
        if (listOnly) {
            PrintRows(request.file, ticks, output);
            return kExitSuccess;
        }

        CImportPreview preview;
        if (!PreviewImport(request, memory, preview)) {
            std::fputs("No parts selected.\n", output.err);
            return kExitFailure;
        }
        // The editor asks at this point; a script says so up front.
        if (!preview.warning.empty() && !arguments.Has("--allow-over-capacity")) {
            std::fprintf(output.err,
                         "%sNothing was written; --allow-over-capacity writes it anyway.\n",
                         preview.warning.c_str());
            return kExitFailure;
        }
        preview.result.modified = 1;
        return SaveDocument(preview.result, arguments.Value("-o"), output) ? kExitSuccess
                                                                           : kExitFailure;
    }
};

} // namespace

std::unique_ptr<ICliCommand> MakeImportCommand()
{
    return std::make_unique<ImportCommand>();
}

} // namespace tarvix::cli
