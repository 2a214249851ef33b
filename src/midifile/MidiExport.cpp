#include "midifile/MidiExport.h"

#include "midifile/DeviceTrackMark.h"
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
constexpr std::uint32_t kMicrosecondsPerMinute = 60000000;
constexpr std::uint64_t kBeatsPerBar = 4;
// The beat is a quarter note (2 as a power of two), with the usual 24 MIDI
// clocks per metronome click and 8 thirty-seconds per quarter note.
constexpr std::uint8_t kQuarterNote = 2;
constexpr std::uint8_t kClocksPerClick = 24;
constexpr std::uint8_t kThirtySecondsPerQuarter = 8;

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

bool IsTempo(std::uint32_t tempo)
{
    return tempo >= kMinTempo && tempo <= kMaxTempo;
}

void AddTempo(CMidiTrackBuilder& builder, std::uint64_t tick, std::uint32_t tempo)
{
    const std::uint32_t perBeat = kMicrosecondsPerMinute / (IsTempo(tempo) ? tempo : kDefaultTempo);
    const std::uint8_t data[] = {static_cast<std::uint8_t>(perBeat >> 16),
                                 static_cast<std::uint8_t>(perBeat >> 8),
                                 static_cast<std::uint8_t>(perBeat)};
    builder.AddMeta(tick, CMidiMetaEvent::kTypeTempo, data);
}

// Bars of four beats. A part or step whose beats are no multiple of four
// ends with one shorter bar, so that the next starts on a bar line, where a
// DAW user looks for it.
void AddTimeSignatures(CMidiTrackBuilder& builder, const ExportLayout& layout)
{
    std::uint64_t current = 0;
    const auto barOf = [&](std::uint64_t tick, std::uint64_t beats) {
        if (beats == current)
            return;
        const std::uint8_t data[] = {static_cast<std::uint8_t>(beats), kQuarterNote,
                                     kClocksPerClick, kThirtySecondsPerQuarter};
        builder.AddMeta(tick, CMidiMetaEvent::kTypeTimeSignature, data);
        current = beats;
    };
    for (const ExportSegment& segment : layout.segments) {
        const std::uint64_t beats = segment.length / kClocksPerBeat;
        const std::uint64_t rest = beats % kBeatsPerBar;
        if (beats >= kBeatsPerBar)
            barOf(segment.start, kBeatsPerBar);
        if (rest != 0)
            barOf(segment.start + (beats - rest) * kClocksPerBeat, rest);
    }
}

// The user's tempo for the whole file; else each song's own where it
// starts, or 120 for parts.
void AddTempi(CMidiTrackBuilder& builder, const CMmt8Memory& memory, const ExportLayout& layout,
              const MidiExportOptions& options)
{
    if (IsTempo(options.tempo) || layout.songStarts.empty()) {
        AddTempo(builder, 0, options.tempo);
        return;
    }
    for (const ExportSongStart& start : layout.songStarts)
        AddTempo(builder, start.tick, memory.Song(start.song).tempo);
}

std::unique_ptr<CMidiTrack> BuildConductor(const CMmt8Memory& memory, const ExportLayout& layout,
                                           const MidiExportOptions& options)
{
    CMidiTrackBuilder builder;
    if (layout.songs)
        AddName(builder, memory.Song(layout.songStarts.front().song).name);
    else if (layout.segments.size() == 1)
        AddName(builder, memory.Part(layout.segments.front().part).name);
    AddTimeSignatures(builder, layout);
    AddTempi(builder, memory, layout, options);
    if (layout.songStarts.size() > 1)
        for (const ExportSongStart& start : layout.songStarts) {
            const std::string& name = memory.Song(start.song).name;
            builder.AddMeta(start.tick, CMidiMetaEvent::kTypeText,
                            Bytes(name.empty() ? FormatText("Song %02d", start.song) : name));
        }
    for (const ExportSegment& segment : layout.segments)
        builder.AddMeta(segment.start, CMidiMetaEvent::kTypeMarker, Bytes(segment.marker));
    return builder.Build(layout.length);
}

// A forced channel goes on the track's channel events, as the device plays
// them, and rides in a channel prefix too, from which the import sets the
// track's channel again.
std::unique_ptr<CMidiTrack> BuildDeviceTrack(const CMmt8Memory& memory, const ExportLayout& layout,
                                             int track)
{
    CMidiTrackBuilder builder;
    builder.AddMeta(0, CMidiMetaEvent::kTypeTrackName, Bytes(FormatText("Track %d", track + 1)));
    builder.AddMeta(0, kTypeSequencerSpecific, kDeviceTrackMark);
    std::vector<PlacedEvent> placed;
    for (const ExportSegment& segment : layout.segments) {
        if ((segment.trackMask >> track & 1) == 0)
            continue;
        const CMmt8Part& part = memory.Part(segment.part);
        const CMmt8Track& source = part.tracks[static_cast<std::size_t>(track)];
        const bool forced = source.channel >= 1 && source.channel <= kMaxTrackChannel;
        if (forced) {
            const std::uint8_t prefix[] = {static_cast<std::uint8_t>(source.channel - 1)};
            builder.AddMeta(segment.start, CMidiMetaEvent::kTypeChannelPrefix, prefix);
        }
        const std::uint64_t end = segment.start + segment.length;
        for (const auto& event : source.events) {
            if (layout.songs && event->time >= segment.length)
                continue; // the device leaves the part before it
            PlacedEvent entry;
            entry.tick = segment.start + event->time;
            entry.event = event.get();
            entry.channel =
                static_cast<std::uint8_t>(forced ? source.channel - 1 : event->channel & 0x0F);
            entry.noteLimit = layout.songs ? end : UINT64_MAX;
            placed.push_back(entry);
        }
    }
    AddDeviceEvents(std::move(placed), builder);
    return builder.Build(layout.length);
}
} // namespace

bool BuildExportFile(const CMmt8Memory& memory, const MidiSelection& selection, CMidiFile& file,
                     std::string& error, const MidiExportOptions& options)
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
    file.tracks.push_back(BuildConductor(memory, layout, options));
    for (const int track : layout.tracks)
        file.tracks.push_back(BuildDeviceTrack(memory, layout, track));
    file.header.trackCount = static_cast<std::uint16_t>(file.tracks.size());
    return true;
}

bool RunExport(const CMmt8Memory& memory, const MidiSelection& selection, const std::string& path,
               std::string& error, const MidiExportOptions& options)
{
    CMidiFile file;
    if (!BuildExportFile(memory, selection, file, error, options))
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
