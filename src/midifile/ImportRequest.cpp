#include "midifile/ImportRequest.h"

#include "midifile/MidiImport.h"
#include "model/Mmt8Memory.h"

namespace tarvix {

namespace {

constexpr const char* kNoTracksSelected = "No tracks selected.\n";
constexpr const char* kNoPartsSelected = "No parts selected.\n";

void AddPart(std::vector<int>& parts, int part)
{
    if (CMmt8Memory::IsPart(part))
        parts.push_back(part);
}

void AddStepPart(const CMmt8Memory& memory, int song, int step, std::vector<int>& parts)
{
    if (!CMmt8Memory::IsSong(song))
        return;
    const auto& steps = memory.Song(song).steps;
    if (step >= 0 && static_cast<std::size_t>(step) < steps.size())
        AddPart(parts, steps[static_cast<std::size_t>(step)].part);
}

void AddSongParts(const CMmt8Memory& memory, int song, std::vector<int>& parts)
{
    if (!CMmt8Memory::IsSong(song))
        return;
    const auto count = static_cast<int>(memory.Song(song).steps.size());
    for (int step = 0; step < count; ++step)
        AddStepPart(memory, song, step, parts);
}

std::uint8_t SongNumber(int song)
{
    return CMmt8Memory::IsSong(song) ? static_cast<std::uint8_t>(song) : kNoTargetSong;
}

} // namespace

bool BuildImportRequest(const CMmt8Memory& memory, const MidiSelection& selection,
                        CMidiImport& request, std::string& error)
{
    std::vector<int>& parts = request.destinationParts;
    parts.clear();
    request.trackMask = kAllTracksMask;
    request.targetSong = kNoTargetSong;

    switch (selection.kind) {
    case MidiSelectionKind::AllParts:
        for (int part = 0; part < kPartCount; ++part)
            parts.push_back(part);
        break;
    case MidiSelectionKind::Part: AddPart(parts, selection.index); break;
    case MidiSelectionKind::PartTracks:
        AddPart(parts, selection.index);
        request.trackMask = 0;
        for (const int track : selection.items)
            if (CMmt8Memory::IsTrack(track))
                request.trackMask = static_cast<std::uint8_t>(request.trackMask | 1u << track);
        break;
    case MidiSelectionKind::Parts:
        for (const int part : selection.items)
            AddPart(parts, part);
        break;
    case MidiSelectionKind::AllSongs:
        for (int song = 0; song < kSongCount; ++song)
            AddSongParts(memory, song, parts);
        request.targetSong = 0;
        break;
    case MidiSelectionKind::Song:
        AddSongParts(memory, selection.index, parts);
        request.targetSong = SongNumber(selection.index);
        break;
    case MidiSelectionKind::Songs:
        for (const int song : selection.items)
            AddSongParts(memory, song, parts);
        if (!selection.items.empty())
            request.targetSong = SongNumber(selection.items.front());
        break;
    case MidiSelectionKind::Steps:
        for (const int step : selection.items)
            AddStepPart(memory, selection.index, step, parts);
        request.targetSong = SongNumber(selection.index);
        break;
    }

    if (request.trackMask == 0) {
        error = kNoTracksSelected;
        return false;
    }
    if (parts.empty()) {
        error = kNoPartsSelected;
        return false;
    }
    return true;
}

} // namespace tarvix
