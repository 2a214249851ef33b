#include "cli/CliSupport.h"
#include "cli/commands/DocumentCommands.h"
#include "model/ListCells.h"
#include "model/Mmt8Memory.h"

namespace tarvix::cli {

namespace {
// The four list views of the editor as TAB-separated text. They differ only
// in the list they show and in whether a part or song number picks it.
class ListViewCommand final : public ICliCommand {
public:
    ListViewCommand(const char* name, const char* summary, ListKind kind, const char* indexName)
        : m_name(name), m_summary(summary), m_kind(kind), m_indexName(indexName)
    {
    }

    const char* Name() const override { return m_name; }
    const char* Summary() const override { return m_summary; }
    std::vector<const char*> PositionalNames() const override
    {
        if (m_indexName)
            return {"FILE.syx", m_indexName};
        return {"FILE.syx"};
    }

    int Run(const ParsedArguments& arguments, const CliOutput& output) const override
    {
        int index = 0;
        std::string error;
        if (m_indexName &&
            !ParseNumber(arguments.positionals[1], m_indexName == kPart ? "part" : "song", 0, 99,
                         index, error))
            return UsageError(*this, error, output);
        CMmt8Memory memory;
        if (!LoadDocument(memory, arguments.positionals[0], output))
            return kExitFailure;
        PrintList(memory, m_kind, index, output);
        return kExitSuccess;
    }

    static constexpr const char* kPart = "PART";
    static constexpr const char* kSong = "SONG";

private:
    const char* m_name;
    const char* m_summary;
    ListKind m_kind;
    const char* m_indexName; // null for the lists of all parts or all songs
};
} // namespace

std::unique_ptr<ICliCommand> MakePartsCommand()
{
    return std::make_unique<ListViewCommand>(
        "parts", "Prints the part list: name, beats and size of parts 00-99.", ListKind::Parts,
        nullptr);
}

std::unique_ptr<ICliCommand> MakeTracksCommand()
{
    return std::make_unique<ListViewCommand>(
        "tracks", "Prints the track list of a part: channel, events and size of tracks 1-8.",
        ListKind::Tracks, ListViewCommand::kPart);
}

std::unique_ptr<ICliCommand> MakeSongsCommand()
{
    return std::make_unique<ListViewCommand>(
        "songs", "Prints the song list: name, tempo and size of songs 00-99.", ListKind::Songs,
        nullptr);
}

std::unique_ptr<ICliCommand> MakeStepsCommand()
{
    return std::make_unique<ListViewCommand>(
        "steps",
        "Prints the step list of a song: part, its name and beats, and the tracks that play.",
        ListKind::Steps, ListViewCommand::kSong);
}

} // namespace tarvix::cli
