#include "midifile/ImportTrackConverter.h"

#include "midifile/ImportClock.h"
#include "midifile/MidiEvent.h"
#include "midifile/MidiTrack.h"
#include "model/Mmt8Track.h"
#include "model/SysexDumpFormat.h"

#include <algorithm>
#include <array>
#include <memory>
#include <span>

namespace tarvix {

namespace {

constexpr std::size_t kSysexPieceSize = 3;

// Controllers from here on are the channel mode messages (All Notes Off and
// its kin).
constexpr std::uint8_t kFirstModeController = 122;

constexpr std::size_t kChannels = 16;
constexpr std::size_t kNotes = 128;

// Appends events to the track being built with the device's time rule: an
// event starts a new time position (timed) only when it is later than the
// last one; otherwise it shares that position.
//
// It also remembers the latest note of each channel and number, which is
// what a backward search of the track (FindOpenNote) would find, since only
// this writer adds to the track while it is built. A note-off then costs one
// look-up instead of a walk back over every event since its note, which a
// file of many events between unmatched note-offs made quadratic.
class CStagingWriter {
public:
    explicit CStagingWriter(CMmt8Track& track) : m_track(track) {}

    CMmt8Track& Track() { return m_track; }

    void StoreNote(std::unique_ptr<CMmt8NoteEvent> note, std::uint16_t clock)
    {
        m_latestNotes[NoteIndex(note->channel, note->data1)] = note.get();
        Store(std::move(note), clock);
    }

    CMmt8NoteEvent* LatestNote(std::uint8_t channel, std::uint8_t note) const
    {
        return m_latestNotes[NoteIndex(channel, note)];
    }

    void Store(std::unique_ptr<CMmt8Event> event, std::uint16_t clock)
    {
        if (!m_track.events.empty() && clock <= m_lastClock) {
            StoreUntimed(std::move(event));
            return;
        }
        event->time = clock;
        event->timed = 1;
        m_lastClock = clock;
        AppendEvent(m_track, std::move(event));
    }

    void StoreUntimed(std::unique_ptr<CMmt8Event> event)
    {
        event->time = m_lastClock;
        event->timed = 0;
        AppendEvent(m_track, std::move(event));
    }

private:
    static std::size_t NoteIndex(std::uint8_t channel, std::uint8_t note)
    {
        return (channel % kChannels) * kNotes + note % kNotes;
    }

    CMmt8Track& m_track;
    std::uint16_t m_lastClock = 0;
    std::array<CMmt8NoteEvent*, kChannels * kNotes> m_latestNotes{};
};

template <typename Event>
std::unique_ptr<CMmt8Event> MakeEvent(std::uint8_t channel, std::uint8_t data1,
                                      std::uint8_t data2 = 0)
{
    auto event = std::make_unique<Event>();
    event->channel = channel;
    event->data1 = data1;
    event->data2 = data2;
    return event;
}

void EndNote(const CStagingWriter& writer, std::uint8_t channel, std::uint8_t note,
             std::uint16_t clock)
{
    CMmt8NoteEvent* open = writer.LatestNote(channel, note);
    if (open != nullptr && clock > open->time)
        open->duration = static_cast<std::uint16_t>(clock - open->time);
}

void ConvertChannelEvent(const CMidiChannelEvent& event, const MidiImportOptions& options,
                         std::uint16_t clock, CStagingWriter& writer)
{
    const std::uint8_t channel = event.GetChannel();
    // The reader keeps data bytes as found; a MIDI data byte has 7 bits, and
    // a top bit would reach the device encoding's flag bits.
    const auto data1 = static_cast<std::uint8_t>(event.GetData1() & 0x7F);
    const auto data2 = static_cast<std::uint8_t>(event.GetData2() & 0x7F);
    switch (event.GetStatus() & 0xF0) {
    case CMidiChannelEvent::kNoteOn:
        if (data2 > 0) {
            auto note = std::make_unique<CMmt8NoteEvent>();
            note->channel = channel;
            note->data1 = data1;
            note->data2 = data2;
            note->duration = 1;
            writer.StoreNote(std::move(note), clock);
            break;
        }
        [[fallthrough]];
    case CMidiChannelEvent::kNoteOff: EndNote(writer, channel, data1, clock); break;
    case CMidiChannelEvent::kControlChange:
        // A deliberate departure: the device's encoding has no room for
        // controllers 122-127. Their lead-byte codes are those of program,
        // aftertouch, pitch bend and SysEx events, and 126/127 end a track,
        // so stored they would come back as other events, or cut the rest of
        // the track off, once the memory is saved and loaded. Like poly
        // aftertouch they are dropped.
        if (data1 < kFirstModeController)
            writer.Store(MakeEvent<CMmt8ControlEvent>(channel, data1, data2), clock);
        break;
    case CMidiChannelEvent::kProgramChange:
        writer.Store(MakeEvent<CMmt8ProgramEvent>(channel, data1), clock);
        break;
    case CMidiChannelEvent::kChannelAftertouch:
        if (options.importAftertouch != 0)
            writer.Store(MakeEvent<CMmt8AftertouchEvent>(channel, data1), clock);
        break;
    case CMidiChannelEvent::kPitchBend: {
        auto bend = MakeEvent<CMmt8PitchBendEvent>(channel, 0);
        static_cast<CMmt8PitchBendEvent&>(*bend).value =
            static_cast<std::uint16_t>(data2 << 8 | data1);
        writer.Store(std::move(bend), clock);
        break;
    }
    case CMidiChannelEvent::kPolyAftertouch:
    default: break;
    }
}

// Three bytes a piece, the unused places of the last one filled with 0x80;
// neither F0 nor F7 is stored. Data bytes keep their 7 bits only, so that
// none reads as a filler or loses its top bit in the device encoding.
void ConvertSysexEvent(const CMidiSysexEvent& event, std::uint16_t clock, CStagingWriter& writer)
{
    std::span<const std::uint8_t> data = event.GetData();
    data = data.first(
        static_cast<std::size_t>(std::find(data.begin(), data.end(), kSysexEnd) - data.begin()));
    for (std::size_t start = 0; start < data.size(); start += kSysexPieceSize) {
        std::uint8_t piece[kSysexPieceSize] = {kSysexFiller, kSysexFiller, kSysexFiller};
        const std::size_t count = std::min(kSysexPieceSize, data.size() - start);
        for (std::size_t i = 0; i < count; ++i)
            piece[i] = static_cast<std::uint8_t>(data[start + i] & 0x7F);
        auto sysex = MakeEvent<CMmt8SysexEvent>(piece[0], piece[1], piece[2]);
        if (start == 0)
            writer.Store(std::move(sysex), clock);
        else
            writer.StoreUntimed(std::move(sysex));
    }
}

void ConvertMetaEvent(const CMidiMetaEvent& event, const MidiImportOptions& options,
                      CMmt8Track& track)
{
    if (event.GetType() != CMidiMetaEvent::kTypeChannelPrefix || options.ignoreChannel != 0)
        return;
    const auto data = event.GetData();
    if (!data.empty() && data[0] < 16)
        track.channel = static_cast<std::uint8_t>(data[0] + 1);
}

} // namespace

void ConvertMidiTrack(const CMidiTrack& source, std::uint16_t division,
                      const MidiImportOptions& options, CMmt8Track& target)
{
    target.Clear();
    CStagingWriter writer(target);
    CImportClock running(division);
    for (const auto& event : source.events) {
        if (!event)
            continue;
        const std::uint64_t clocks = running.Advance(event->GetDeltaTime());
        if (clocks > kLastImportClock)
            break;
        const auto clock = static_cast<std::uint16_t>(clocks);
        switch (event->GetKind()) {
        case CMidiEvent::kChannel:
            ConvertChannelEvent(static_cast<const CMidiChannelEvent&>(*event), options, clock,
                                writer);
            break;
        case CMidiEvent::kSysex:
            if (options.importSysex != 0)
                ConvertSysexEvent(static_cast<const CMidiSysexEvent&>(*event), clock, writer);
            break;
        case CMidiEvent::kMeta:
            ConvertMetaEvent(static_cast<const CMidiMetaEvent&>(*event), options, target);
            break;
        default: break;
        }
    }
}

} // namespace tarvix
