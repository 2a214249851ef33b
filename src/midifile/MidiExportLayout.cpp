#include "midifile/MidiExportLayout.h"

#include "model/Mmt8Memory.h"
#include "model/TextBuilder.h"

#include <algorithm>

namespace tarvix {

namespace {
using Kind = MidiSelectionKind;

bool IsSongKind(Kind kind)
{
    return kind == Kind::AllSongs || kind == Kind::Song || kind == Kind::Songs ||
           kind == Kind::Steps;
}

std::vector<int> AllTracks()
{
    std::vector<int> tracks(kTracksPerPart);
    for (int i = 0; i < kTracksPerPart; ++i)
        tracks[static_cast<std::size_t>(i)] = i;
    return tracks;
}

std::uint8_t MaskOf(const std::vector<int>& tracks)
{
    unsigned mask = 0;
    for (const int track : tracks)
        mask |= 1u << track;
    return static_cast<std::uint8_t>(mask);
}

// A part's name, or "Part NN" when it has none.
std::string MarkerText(const CMmt8Memory& memory, int part)
{
    const std::string& name = memory.Part(part).name;
    return name.empty() ? FormatText("Part %02d", part) : name;
}

// The part's beats, stretched to hold an event placed past them, so that
// no event falls into the next part's stretch.
std::uint64_t PartLength(const CMmt8Part& part, const std::vector<int>& tracks)
{
    std::uint64_t beats = part.beats;
    for (const int track : tracks)
        for (const auto& event : part.tracks[static_cast<std::size_t>(track)].events)
            beats = std::max<std::uint64_t>(beats, event->time / kClocksPerBeat + 1);
    return beats * kClocksPerBeat;
}

void LayOutParts(const CMmt8Memory& memory, const std::vector<int>& parts, ExportLayout& layout)
{
    for (const int part : parts) {
        if (!CMmt8Memory::IsPart(part) || memory.Part(part).IsEmpty())
            continue;
        ExportSegment segment;
        segment.part = part;
        segment.trackMask = MaskOf(layout.tracks);
        segment.start = layout.length;
        segment.length = PartLength(memory.Part(part), layout.tracks);
        segment.marker = MarkerText(memory, part);
        layout.length += segment.length;
        layout.segments.push_back(std::move(segment));
    }
}

// A song's steps in play order, or the chosen ones in the chosen order.
void LayOutSong(const CMmt8Memory& memory, int song, const std::vector<int>* chosenSteps,
                ExportLayout& layout)
{
    if (!CMmt8Memory::IsSong(song))
        return;
    const auto& steps = memory.Song(song).steps;
    std::vector<std::size_t> order;
    if (chosenSteps == nullptr) {
        for (std::size_t i = 0; i < steps.size(); ++i)
            order.push_back(i);
    } else {
        for (const int step : *chosenSteps)
            if (step >= 0 && static_cast<std::size_t>(step) < steps.size())
                order.push_back(static_cast<std::size_t>(step));
    }
    if (order.empty())
        return;
    layout.songStarts.push_back(ExportSongStart{layout.length, song});
    for (const std::size_t index : order) {
        const Mmt8Step& step = steps[index];
        if (!CMmt8Memory::IsPart(step.part))
            continue;
        ExportSegment segment;
        segment.part = step.part;
        segment.trackMask = step.trackMask;
        segment.start = layout.length;
        segment.length = std::uint64_t{memory.Part(step.part).beats} * kClocksPerBeat;
        segment.marker = MarkerText(memory, step.part);
        layout.length += segment.length;
        layout.segments.push_back(std::move(segment));
    }
}

std::vector<int> SelectedTracks(const std::vector<int>& items)
{
    std::vector<int> tracks;
    for (const int track : items)
        if (CMmt8Memory::IsTrack(track))
            tracks.push_back(track);
    std::sort(tracks.begin(), tracks.end());
    tracks.erase(std::unique(tracks.begin(), tracks.end()), tracks.end());
    return tracks;
}

std::vector<int> SelectedParts(const CMmt8Memory& memory, const MidiSelection& selection)
{
    switch (selection.kind) {
    case Kind::AllParts: {
        std::vector<int> parts;
        for (int part = 0; part < kPartCount; ++part)
            if (!memory.Part(part).IsEmpty())
                parts.push_back(part);
        return parts;
    }
    case Kind::Part:
    case Kind::PartTracks: return {selection.index};
    default: return selection.items;
    }
}
} // namespace

ExportLayout LayOutExport(const CMmt8Memory& memory, const MidiSelection& selection)
{
    ExportLayout layout;
    layout.songs = IsSongKind(selection.kind);
    layout.tracks =
        selection.kind == Kind::PartTracks ? SelectedTracks(selection.items) : AllTracks();
    if (layout.tracks.empty())
        return layout;
    switch (selection.kind) {
    case Kind::AllSongs:
        for (int song = 0; song < kSongCount; ++song)
            LayOutSong(memory, song, nullptr, layout);
        break;
    case Kind::Song: LayOutSong(memory, selection.index, nullptr, layout); break;
    case Kind::Songs:
        for (const int song : selection.items)
            LayOutSong(memory, song, nullptr, layout);
        break;
    case Kind::Steps: LayOutSong(memory, selection.index, &selection.items, layout); break;
    default: LayOutParts(memory, SelectedParts(memory, selection), layout); break;
    }
    return layout;
}

} // namespace tarvix
