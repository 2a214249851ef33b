#include "midifile/ImportTrackList.h"

#include "midifile/DeviceTrackMark.h"
#include "midifile/MidiFileStream.h"
#include "midifile/MidiImport.h"

#include <array>

namespace tarvix {

namespace {

constexpr std::array<ImportColumnInfo, 4> kColumns = {{
    {"  ", 1},
    {"MIDI Track", 8},
    {"MMT8 Track", 4},
    {"MIDI Events", 4},
}};

constexpr std::uint32_t kDeviceTracks = 8;

std::string TrackText(std::size_t number)
{
    return "Track " + std::to_string(number);
}

// A track name may hold any byte; a control character would break a row
// (or a TAB-separated line) apart.
std::string ShownName(std::string name)
{
    for (char& c : name)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = '?';
    return name;
}

} // namespace

std::span<const ImportColumnInfo> GetImportColumns()
{
    return kColumns;
}

bool LoadImportFile(CMidiImport& request, CMidiFileStream& stream)
{
    request.file.Clear();
    try {
        request.file.Persist(stream);
    } catch (...) {
        request.file.Clear();
        throw;
    }
    return request.options.explodeType0 != 0 && request.file.ExplodeType0();
}

bool LoadImportFile(CMidiImport& request)
{
    request.file.Clear();
    CMidiFileStream stream;
    stream.Open(request.sourcePath, CMidiFileStream::kModeRead);
    return LoadImportFile(request, stream);
}

bool ExplodeChangeReloads(bool wasSplit, const CMidiFile& file)
{
    return wasSplit || file.header.format == 0;
}

std::vector<bool> GetInitialTicks(const CMidiFile& file)
{
    std::vector<bool> ticks;
    ticks.reserve(file.tracks.size());
    for (const auto& track : file.tracks)
        ticks.push_back(track && (FindEventOfKind(*track, CMidiEvent::kChannel, 0) != nullptr ||
                                  FindEventOfKind(*track, CMidiEvent::kSysex, 0) != nullptr ||
                                  HasDeviceTrackMark(*track)));
    return ticks;
}

void AssignDeviceTracks(CMidiFile& file, const std::vector<bool>& ticks, std::uint8_t trackMask)
{
    std::uint32_t bit = 0;
    for (std::size_t row = 0; row < file.tracks.size(); ++row) {
        if (!file.tracks[row])
            continue;
        std::uint32_t& assigned = file.tracks[row]->spare;
        assigned = 0;
        if (row >= ticks.size() || !ticks[row])
            continue;
        while (bit < kDeviceTracks && (trackMask & (1u << bit)) == 0)
            ++bit;
        if (bit < kDeviceTracks)
            assigned = ++bit;
    }
}

std::string GetImportCellText(const CMidiFile& file, std::size_t row, ImportColumn column)
{
    if (row >= file.tracks.size() || !file.tracks[row])
        return {};
    const CMidiTrack& track = *file.tracks[row];
    switch (column) {
    case ImportColumn::MidiTrack: {
        std::string name;
        if (GetMetaText(track, CMidiMetaEvent::kTypeTrackName, 0, name) && !name.empty())
            return ShownName(std::move(name));
        return TrackText(row + 1);
    }
    case ImportColumn::Mmt8Track: return track.spare == 0 ? std::string() : TrackText(track.spare);
    case ImportColumn::MidiEvents: return std::to_string(track.events.size());
    case ImportColumn::Tick:
    default: return {};
    }
}

} // namespace tarvix
