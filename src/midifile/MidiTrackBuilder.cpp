#include "midifile/MidiTrackBuilder.h"

#include <algorithm>

namespace tarvix {

namespace {
constexpr std::uint8_t kMetaStatus = 0xFF;
// Readers that take delta times of three bytes, ours among them, read no
// more than this...
constexpr std::uint64_t kLongestDelta = 0x1FFFFF;
// ...and ours takes this one for a failed read.
constexpr std::uint64_t kUnreadableDelta = 0xFFFF;

std::unique_ptr<CMidiMetaEvent> MakeMeta(std::uint32_t delta, std::uint8_t type)
{
    auto meta = std::make_unique<CMidiMetaEvent>(delta, kMetaStatus);
    meta->SetType(type);
    return meta;
}

// Appends event after delta ticks, bridging a delta no reader could take
// with empty text events, which every reader passes over.
void AppendAfter(CMidiTrack& track, std::uint64_t delta, std::unique_ptr<CMidiEvent> event)
{
    while (delta > kLongestDelta || delta == kUnreadableDelta) {
        const std::uint64_t step = delta == kUnreadableDelta ? kUnreadableDelta - 1 : kLongestDelta;
        track.AppendEvent(MakeMeta(static_cast<std::uint32_t>(step), CMidiMetaEvent::kTypeText));
        delta -= step;
    }
    event->SetDeltaTime(static_cast<std::uint32_t>(delta));
    track.AppendEvent(std::move(event));
}
} // namespace

void CMidiTrackBuilder::Add(std::uint64_t tick, std::uint8_t rank,
                            std::unique_ptr<CMidiEvent> event)
{
    if (!event)
        return;
    m_entries.push_back(Entry{tick, rank, std::move(event)});
}

void CMidiTrackBuilder::AddMeta(std::uint64_t tick, std::uint8_t type,
                                std::span<const std::uint8_t> data)
{
    auto meta = MakeMeta(0, type);
    meta->SetData(data);
    Add(tick, kRankMeta, std::move(meta));
}

void CMidiTrackBuilder::AddChannel(std::uint64_t tick, std::uint8_t rank, std::uint8_t status,
                                   std::uint8_t data1, std::uint8_t data2)
{
    auto event = std::make_unique<CMidiChannelEvent>(0, status);
    event->SetData(data1, data2);
    Add(tick, rank, std::move(event));
}

std::unique_ptr<CMidiTrack> CMidiTrackBuilder::Build(std::uint64_t endTick)
{
    std::stable_sort(m_entries.begin(), m_entries.end(), [](const Entry& a, const Entry& b) {
        return a.tick != b.tick ? a.tick < b.tick : a.rank < b.rank;
    });
    auto track = std::make_unique<CMidiTrack>();
    std::uint64_t now = 0;
    for (Entry& entry : m_entries) {
        AppendAfter(*track, entry.tick - now, std::move(entry.event));
        now = entry.tick;
    }
    AppendAfter(*track, std::max(endTick, now) - now, MakeMeta(0, CMidiMetaEvent::kTypeEndOfTrack));
    m_entries.clear();
    return track;
}

} // namespace tarvix
