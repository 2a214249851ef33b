#include "cli/SelectionArguments.h"

#include "cli/CliSupport.h"
#include "model/Mmt8Limits.h"
#include "model/Mmt8Memory.h"

#include <algorithm>
#include <array>

namespace tarvix::cli {

namespace {

struct SelectionKindOption {
    const char* name;
    MidiSelectionKind kind;
};

constexpr std::array<SelectionKindOption, 7> kKindOptions = {{
    {"--part", MidiSelectionKind::Part},
    {"--parts", MidiSelectionKind::Parts},
    {"--all-parts", MidiSelectionKind::AllParts},
    {"--song", MidiSelectionKind::Song},
    {"--songs", MidiSelectionKind::Songs},
    {"--all-songs", MidiSelectionKind::AllSongs},
    {"--steps", MidiSelectionKind::Steps},
}};

void ToModelNumbers(std::vector<int>& values)
{
    for (int& value : values)
        --value;
}

bool ParseSteps(const std::string& text, MidiSelection& selection, std::string& error)
{
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos) {
        error = "invalid steps '" + text + "' (expected SONG:STEP,STEP...)";
        return false;
    }
    if (!ParseNumber(text.substr(0, colon), "song", 0, kSongCount - 1, selection.index, error) ||
        !ParseNumberList(text.substr(colon + 1), "step", 1, kMaxSteps, selection.items, error))
        return false;
    ToModelNumbers(selection.items);
    return true;
}

} // namespace

std::vector<OptionSpec> WithSelectionOptions(std::vector<OptionSpec> options)
{
    options.insert(options.end(),
                   {
                       {"--part", true, "SELECTION: one part, 0-99"},
                       {"--tracks", true, "with --part: some of its tracks, 1-8 (3,6)"},
                       {"--parts", true, "SELECTION: parts (3,5,9)"},
                       {"--all-parts", false, "SELECTION: every part"},
                       {"--song", true, "SELECTION: one song, 0-99"},
                       {"--songs", true, "SELECTION: songs (1,4)"},
                       {"--all-songs", false, "SELECTION: every song"},
                       {"--steps", true, "SELECTION: steps of a song, from 1 (SONG:1,2)"},
                   });
    return options;
}

bool ParseSelection(const ParsedArguments& arguments, MidiSelection& selection, std::string& error)
{
    const auto given =
        std::count_if(kKindOptions.begin(), kKindOptions.end(),
                      [&](const auto& option) { return arguments.Has(option.name); });
    if (given != 1) {
        error = given == 0 ? "a selection is required (--part, --parts, --all-parts, --song, "
                             "--songs, --all-songs or --steps)"
                           : "give only one selection";
        return false;
    }
    if (arguments.Has("--tracks") && !arguments.Has("--part")) {
        error = "--tracks selects tracks of the part given with --part";
        return false;
    }
    const auto kind = std::find_if(kKindOptions.begin(), kKindOptions.end(),
                                   [&](const auto& option) { return arguments.Has(option.name); });
    selection = MidiSelection{};
    selection.kind = kind->kind;
    const std::string value = arguments.Value(kind->name);
    switch (selection.kind) {
    case MidiSelectionKind::Part:
        if (!ParseNumber(value, "part", 0, kPartCount - 1, selection.index, error))
            return false;
        if (arguments.Has("--tracks")) {
            selection.kind = MidiSelectionKind::PartTracks;
            if (!ParseNumberList(arguments.Value("--tracks"), "track", 1, kTracksPerPart,
                                 selection.items, error))
                return false;
            ToModelNumbers(selection.items);
        }
        return true;
    case MidiSelectionKind::Parts:
        return ParseNumberList(value, "part", 0, kPartCount - 1, selection.items, error);
    case MidiSelectionKind::Song:
        return ParseNumber(value, "song", 0, kSongCount - 1, selection.index, error);
    case MidiSelectionKind::Songs:
        return ParseNumberList(value, "song", 0, kSongCount - 1, selection.items, error);
    case MidiSelectionKind::Steps: return ParseSteps(value, selection, error);
    case MidiSelectionKind::AllParts:
    case MidiSelectionKind::AllSongs:
    case MidiSelectionKind::PartTracks: return true;
    }
    return true;
}

int LoadSelectedDocument(const ICliCommand& command, const std::string& path,
                         const MidiSelection& selection, CMmt8Memory& memory,
                         const CliOutput& output)
{
    if (!LoadDocument(memory, path, output))
        return kExitFailure;
    if (selection.kind != MidiSelectionKind::Steps)
        return kExitSuccess;
    const auto count = static_cast<int>(memory.Song(selection.index).steps.size());
    for (const int step : selection.items) {
        if (step >= count)
            return UsageError(command,
                              "invalid step '" + std::to_string(step + 1) + "' (song " +
                                  std::to_string(selection.index) + " has " +
                                  std::to_string(count) + " steps)",
                              output);
    }
    return kExitSuccess;
}

bool ParseNumberList(const std::string& text, const char* what, int lowest, int highest,
                     std::vector<int>& values, std::string& error)
{
    values.clear();
    if (text.empty())
        return true;
    std::size_t start = 0;
    for (;;) {
        const std::size_t comma = text.find(',', start);
        int value = 0;
        if (!ParseNumber(text.substr(start, comma - start), what, lowest, highest, value, error))
            return false;
        values.push_back(value);
        if (comma == std::string::npos)
            return true;
        start = comma + 1;
    }
}

} // namespace tarvix::cli
