#include "midifile/MidiExport.h"

#include "midifile/MidiExportEvents.h"
#include "midifile/MidiExportLayout.h"
#include "midifile/MidiFile.h"
#include "midifile/MidiFileException.h"
#include "midifile/MidiFileStream.h"
#include "midifile/MidiTrackBuilder.h"
#include "model/Mmt8Memory.h"
#include "model/TextBuilder.h"

#include <span>

namespace tarvix {

namespace {
constexpr std::uint16_t kFormat = 1;
constexpr std::uint8_t kTypeChannelPrefix = 0x20;
constexpr std::uint8_t kTypeMarker = 0x06;
constexpr std::uint32_t kMicrosecondsPerMinute = 60000000;
// An empty SysEx message: the import ticks a track for holding it and then
// stores nothing, so a device track without events keeps its place.
constexpr std::uint8_t kEmptySysexData[] = {0xF7};

std::span<const std::uint8_t> Bytes(const std::string& text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

// The import names a part after the first track; without a name it takes
// the file's name instead.
void AddName(CMidiTrackBuilder& builder, const std::string& name)
{
    if (!name.empty())
        builder.AddMeta(0, CMidiMetaEvent::kTypeTrackName, Bytes(name));
}

std::uint32_t TempoBpm(std::uint8_t tempo)
{
    return tempo >= kMinTempo && tempo <= kMaxTempo ? tempo : kDefaultTempo;
}

void AddTempo(CMidiTrackBuilder& builder, std::uint64_t tick, std::uint8_t tempo)
{
    const std::uint32_t perBeat = kMicrosecondsPerMinute / TempoBpm(tempo);
    const std::uint8_t data[] = {static_cast<std::uint8_t>(perBeat >> 16),
                                 static_cast<std::uint8_t>(perBeat >> 8),
                                 static_cast<std::uint8_t>(perBeat)};
    builder.AddMeta(tick, CMidiMetaEvent::kTypeTempo, data);
}

std::unique_ptr<CMidiTrack> BuildConductor(const CMmt8Memory& memory, const ExportLayout& layout)
{
    CMidiTrackBuilder builder;
    if (layout.songs)
        AddName(builder, memory.Song(layout.songStarts.front().song).name);
    else if (layout.segments.size() == 1)
        AddName(builder, memory.Part(layout.segments.front().part).name);
    for (const ExportSongStart& start : layout.songStarts) {
        const CMmt8Song& song = memory.Song(start.song);
        AddTempo(builder, start.tick, song.tempo);
        if (layout.songStarts.size() > 1)
            builder.AddMeta(start.tick, CMidiMetaEvent::kTypeText,
                            Bytes(song.name.empty() ? FormatText("Song %02d", start.song)
                                                    : song.name));
    }
    for (const ExportSegment& segment : layout.segments)
        builder.AddMeta(segment.start, kTypeMarker, Bytes(segment.marker));
    return builder.Build(layout.length);
}

// Parts keep each event's own channel and carry the track's channel in a
// channel prefix for the import; songs put the forced channel on the
// events, as the device does when it plays them.
std::unique_ptr<CMidiTrack> BuildDeviceTrack(const CMmt8Memory& memory, const ExportLayout& layout,
                                             int track)
{
    CMidiTrackBuilder builder;
    builder.AddMeta(0, CMidiMetaEvent::kTypeTrackName, Bytes(FormatText("Track %d", track + 1)));
    std::vector<PlacedEvent> placed;
    for (const ExportSegment& segment : layout.segments) {
        if ((segment.trackMask >> track & 1) == 0)
            continue;
        const CMmt8Part& part = memory.Part(segment.part);
        const CMmt8Track& source = part.tracks[static_cast<std::size_t>(track)];
        const bool forced = source.channel >= 1 && source.channel <= kMaxTrackChannel;
        if (forced && !layout.songs) {
            const std::uint8_t prefix[] = {static_cast<std::uint8_t>(source.channel - 1)};
            builder.AddMeta(segment.start, kTypeChannelPrefix, prefix);
        }
        const std::uint64_t end = segment.start + segment.length;
        for (const auto& event : source.events) {
            if (layout.songs && event->time >= segment.length)
                continue; // the device leaves the part before it
            PlacedEvent entry;
            entry.tick = segment.start + event->time;
            entry.event = event.get();
            entry.channel = static_cast<std::uint8_t>(
                forced && layout.songs ? source.channel - 1 : event->channel & 0x0F);
            entry.noteLimit = layout.songs ? end : UINT64_MAX;
            placed.push_back(entry);
        }
    }
    AddDeviceEvents(std::move(placed), builder);
    if (!builder.HasMessages()) {
        auto placeholder = std::make_unique<CMidiSysexEvent>(0, 0xF0);
        placeholder->SetData(kEmptySysexData);
        builder.Add(0, CMidiTrackBuilder::kRankMeta, std::move(placeholder));
    }
    return builder.Build(layout.length);
}
} // namespace

bool BuildExportFile(const CMmt8Memory& memory, const MidiSelection& selection, CMidiFile& file,
                     std::string& error)
{
    const ExportLayout layout = LayOutExport(memory, selection);
    if (layout.length == 0) {
        error = layout.tracks.empty() ? kNoTracksToExport
                : layout.songs        ? kNothingToExportSongs
                                      : kNothingToExportParts;
        return false;
    }
    file.Clear();
    file.header.format = kFormat;
    file.header.division = static_cast<std::uint16_t>(kClocksPerBeat);
    file.tracks.push_back(BuildConductor(memory, layout));
    for (const int track : layout.tracks)
        file.tracks.push_back(BuildDeviceTrack(memory, layout, track));
    file.header.trackCount = static_cast<std::uint16_t>(file.tracks.size());
    return true;
}

bool RunExport(const CMmt8Memory& memory, const MidiSelection& selection, const std::string& path,
               std::string& error)
{
    CMidiFile file;
    if (!BuildExportFile(memory, selection, file, error))
        return false;
    try {
        CMidiFileStream stream;
        stream.Open(path, CMidiFileStream::kModeWrite);
        file.Persist(stream);
        stream.Close();
    } catch (const CMidiFileException& exception) {
        error = exception.GetMessage();
        return false;
    }
    return true;
}

} // namespace tarvix
