#include "model/ListCells.h"

#include "model/Mmt8Memory.h"
#include "model/TextBuilder.h"

namespace tarvix {

namespace {
std::string Number(std::uint32_t value)
{
    return FormatText("%u", value);
}
std::string NumberOrEmpty(std::uint32_t value)
{
    return value == 0 ? std::string{} : Number(value);
}
std::string RowLabel(unsigned value)
{
    return FormatText(" %02u", value);
}

// Names come from dumps and may hold any byte; a control character shown
// as it is would break a list row (or a TAB-separated line) apart.
std::string DisplayName(std::string name)
{
    for (char& c : name)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = '?';
    return name;
}

std::string PartCell(const CMmt8Memory& memory, int part, int column)
{
    switch (column) {
    case 0: return RowLabel(unsigned(part));
    case 1: return DisplayName(memory.Part(part).name);
    case 2: return NumberOrEmpty(memory.Part(part).beats);
    case 3: return Number(memory.GetPartSize(part));
    default: return {};
    }
}

std::string TrackCell(const CMmt8Memory& memory, int part, int track, int column)
{
    const CMmt8Track& data = memory.Part(part).tracks[static_cast<std::size_t>(track)];
    switch (column) {
    case 0: return RowLabel(unsigned(track) + 1);
    case 1: return data.channel == 0 ? std::string("Unchanged") : Number(data.channel);
    case 2: return Number(static_cast<std::uint32_t>(data.events.size()));
    case 3: return Number(memory.GetTrackSize(part, track));
    default: return {};
    }
}

std::string SongCell(const CMmt8Memory& memory, int song, int column)
{
    switch (column) {
    case 0: return RowLabel(unsigned(song));
    case 1: return DisplayName(memory.Song(song).name);
    case 2: return NumberOrEmpty(memory.Song(song).tempo);
    case 3: return Number(memory.GetSongSize(song));
    default: return {};
    }
}

std::string StepCell(const CMmt8Memory& memory, int song, int step, int column)
{
    const int part = memory.Song(song).steps[static_cast<std::size_t>(step)].part;
    const bool known = CMmt8Memory::IsPart(part);
    switch (column) {
    case 0: return RowLabel(unsigned(part));
    case 1: return known ? DisplayName(memory.Part(part).name) : std::string{};
    case 2: return known ? NumberOrEmpty(memory.Part(part).beats) : std::string{};
    case 3: return memory.GetStepTracksText(song, step);
    default: return {};
    }
}
} // namespace

const std::vector<ListColumn>& GetListColumns(ListKind kind)
{
    static const std::vector<ListColumn> parts = {
        {"##", 1}, {"Part name", 5}, {"Number of beats", 4}, {"Size in bytes", 0}};
    static const std::vector<ListColumn> tracks = {
        {"##", 1}, {"Midi channel", 5}, {"Number of events", 4}, {"Size in bytes", 0}};
    static const std::vector<ListColumn> songs = {
        {"##", 1}, {"Song name", 5}, {"Beats per minute", 4}, {"Size in bytes", 0}};
    static const std::vector<ListColumn> steps = {
        {"##", 1}, {"Part name", 5}, {"Number of beats", 4}, {"Tracks enabled", 0}};
    switch (kind) {
    case ListKind::Parts: return parts;
    case ListKind::Tracks: return tracks;
    case ListKind::Songs: return songs;
    case ListKind::Steps: break;
    }
    return steps;
}

int GetListRowCount(const CMmt8Memory& memory, ListKind kind, int index)
{
    switch (kind) {
    case ListKind::Parts: return kPartCount;
    case ListKind::Tracks: return CMmt8Memory::IsPart(index) ? kTracksPerPart : 0;
    case ListKind::Songs: return kSongCount;
    case ListKind::Steps:
        return CMmt8Memory::IsSong(index) ? static_cast<int>(memory.Song(index).steps.size()) : 0;
    }
    return 0;
}

std::string GetListCellText(const CMmt8Memory& memory, ListKind kind, int index, int row,
                            int column)
{
    if (row < 0 || row >= GetListRowCount(memory, kind, index))
        return {};
    switch (kind) {
    case ListKind::Parts: return PartCell(memory, row, column);
    case ListKind::Tracks: return TrackCell(memory, index, row, column);
    case ListKind::Songs: return SongCell(memory, row, column);
    case ListKind::Steps: return StepCell(memory, index, row, column);
    }
    return {};
}

} // namespace tarvix
