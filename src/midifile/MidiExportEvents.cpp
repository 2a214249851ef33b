#include "midifile/MidiExportEvents.h"

#include "midifile/MidiEvent.h"
#include "midifile/MidiTrackBuilder.h"
#include "model/Mmt8Event.h"
#include "model/SysexDumpFormat.h"

#include <algorithm>
#include <array>

namespace tarvix {

namespace {
constexpr std::uint8_t kReleaseVelocity = 64;
constexpr std::size_t kKeyCount = 16 * 128;

// A file holds 7-bit data bytes only.
std::uint8_t Data(unsigned value)
{
    return static_cast<std::uint8_t>(value & 0x7F);
}

std::uint8_t Status(std::uint8_t message, std::uint8_t channel)
{
    return static_cast<std::uint8_t>(message | (channel & 0x0F));
}

std::size_t Key(const PlacedEvent& placed)
{
    return std::size_t{placed.channel & 0x0Fu} * 128 + Data(placed.event->data1);
}

bool IsSoundingNote(const PlacedEvent& placed)
{
    return placed.event->GetTypeCode() == kNoteEventType && Data(placed.event->data2) != 0;
}

// Where each note ends in the file (0 for other events), walking backwards
// so that the next start of every key is known.
std::vector<std::uint64_t> NoteEnds(const std::vector<PlacedEvent>& events)
{
    std::vector<std::uint64_t> ends(events.size(), 0);
    std::array<std::uint64_t, kKeyCount> nextStart;
    nextStart.fill(UINT64_MAX);
    for (std::size_t i = events.size(); i-- > 0;) {
        const PlacedEvent& placed = events[i];
        if (!IsSoundingNote(placed))
            continue;
        const auto& note = static_cast<const CMmt8NoteEvent&>(*placed.event);
        const std::size_t key = Key(placed);
        const std::uint64_t end =
            std::min({placed.tick + note.duration, placed.noteLimit, nextStart[key]});
        ends[i] = std::max(end, placed.tick);
        nextStart[key] = placed.tick;
    }
    return ends;
}

// Joins SysEx pieces into messages of F0 ... F7.
class CSysexJoiner {
public:
    explicit CSysexJoiner(CMidiTrackBuilder& builder) : m_builder(builder) {}

    void AddPiece(const PlacedEvent& placed)
    {
        if (placed.tick != m_tick)
            Flush();
        m_tick = placed.tick;
        const CMmt8Event& piece = *placed.event;
        for (const std::uint8_t byte : {piece.channel, piece.data1, piece.data2}) {
            if (byte == kSysexFiller) {
                Flush();
                return;
            }
            m_message.push_back(Data(byte));
        }
    }

    void Flush()
    {
        if (m_message.empty())
            return;
        m_message.push_back(kSysexEnd);
        auto event = std::make_unique<CMidiSysexEvent>(0, kSysexStart);
        event->SetData(m_message);
        m_builder.Add(m_tick, CMidiTrackBuilder::kRankMessage, std::move(event));
        m_message.clear();
    }

private:
    CMidiTrackBuilder& m_builder;
    std::uint64_t m_tick = 0;
    std::vector<std::uint8_t> m_message;
};

void AddMessage(const PlacedEvent& placed, std::uint64_t noteEnd, CMidiTrackBuilder& builder)
{
    const CMmt8Event& event = *placed.event;
    const std::uint64_t tick = placed.tick;
    const std::uint8_t channel = placed.channel;
    constexpr std::uint8_t rank = CMidiTrackBuilder::kRankMessage;
    switch (event.GetTypeCode()) {
    case kNoteEventType: {
        if (!IsSoundingNote(placed))
            return;
        const std::uint8_t note = Data(event.data1);
        builder.AddChannel(tick, rank, Status(CMidiChannelEvent::kNoteOn, channel), note,
                           Data(event.data2));
        const bool hasLength = noteEnd > tick;
        builder.AddChannel(noteEnd, hasLength ? CMidiTrackBuilder::kRankNoteOff : rank,
                           Status(CMidiChannelEvent::kNoteOff, channel), note, kReleaseVelocity);
        return;
    }
    case kControlEventType:
        builder.AddChannel(tick, rank, Status(CMidiChannelEvent::kControlChange, channel),
                           Data(event.data1), Data(event.data2));
        return;
    case kProgramEventType:
        builder.AddChannel(tick, rank, Status(CMidiChannelEvent::kProgramChange, channel),
                           Data(event.data1));
        return;
    case kAftertouchEventType:
        builder.AddChannel(tick, rank, Status(CMidiChannelEvent::kChannelAftertouch, channel),
                           Data(event.data1));
        return;
    case kPitchBendEventType: {
        const unsigned value = static_cast<const CMmt8PitchBendEvent&>(event).value;
        builder.AddChannel(tick, rank, Status(CMidiChannelEvent::kPitchBend, channel), Data(value),
                           Data(value >> 8));
        return;
    }
    default: return;
    }
}
} // namespace

void AddDeviceEvents(std::vector<PlacedEvent> events, CMidiTrackBuilder& builder)
{
    std::erase_if(events, [](const PlacedEvent& placed) { return placed.event == nullptr; });
    std::stable_sort(events.begin(), events.end(),
                     [](const PlacedEvent& a, const PlacedEvent& b) { return a.tick < b.tick; });
    const std::vector<std::uint64_t> noteEnds = NoteEnds(events);
    CSysexJoiner sysex(builder);
    for (std::size_t i = 0; i < events.size(); ++i) {
        if (events[i].event->GetTypeCode() == kSysexEventType) {
            sysex.AddPiece(events[i]);
            continue;
        }
        sysex.Flush();
        AddMessage(events[i], noteEnds[i], builder);
    }
    sysex.Flush();
}

} // namespace tarvix
