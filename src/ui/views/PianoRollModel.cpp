#include "ui/views/PianoRollModel.h"

#include "model/Mmt8Event.h"
#include "model/Mmt8Part.h"
#include "model/TextBuilder.h"
#include "model/TrackListing.h"
#include "ui/views/TimeLine.h"

#include <algorithm>

namespace tarvix {

namespace {
constexpr std::uint8_t kBendCentreMsb = 0x40;

std::uint8_t LaneHeight(const CMmt8Event& event)
{
    switch (event.GetTypeCode()) {
    case kControlEventType: return event.data2 & 0x7F;
    case kProgramEventType:
    case kAftertouchEventType: return event.data1 & 0x7F;
    case kPitchBendEventType:
        return static_cast<std::uint8_t>(
            (static_cast<const CMmt8PitchBendEvent&>(event).value >> 8) & 0x7F);
    default: return kBendCentreMsb; // SysEx has no value to show
    }
}
} // namespace

void CPianoRollModel::Clear()
{
    m_notes.clear();
    m_reach.clear();
    m_lane.clear();
    m_trackNotes.fill(0);
    m_trackEvents.fill(false);
    m_length = kClocksPerBar;
    m_beats = 0;
    m_lowest = 60;
    m_highest = 72;
}

void CPianoRollModel::Rebuild(const CMmt8Part& part)
{
    Clear();
    m_beats = part.beats;
    std::uint32_t length = part.beats * kClocksPerBeat;
    int lowest = 128;
    int highest = -1;
    for (int track = 0; track < kTracksPerPart; ++track) {
        const auto& events = part.tracks[static_cast<std::size_t>(track)].events;
        for (std::uint32_t i = 0; i < events.size(); ++i) {
            const CMmt8Event* event = events[i].get();
            m_trackEvents[static_cast<std::size_t>(track)] = true;
            const auto index = static_cast<std::uint8_t>(track);
            if (event->GetTypeCode() == kNoteEventType) {
                const auto& note = static_cast<const CMmt8NoteEvent&>(*event);
                const std::uint8_t pitch = note.data1 & 0x7F;
                m_notes.push_back({note.time, std::uint32_t{note.time} + note.duration, pitch,
                                   static_cast<std::uint8_t>(note.data2 & 0x7F), index, i});
                ++m_trackNotes[static_cast<std::size_t>(track)];
                lowest = std::min<int>(lowest, pitch);
                highest = std::max<int>(highest, pitch);
                length = std::max(length, m_notes.back().end);
            } else {
                m_lane.push_back({event->time, LaneHeight(*event), index, event->GetTypeCode(), i});
                length = std::max(length, std::uint32_t{event->time} + 1);
            }
        }
    }
    // Each track is in time order already; merged, they are not.
    std::stable_sort(m_notes.begin(), m_notes.end(),
                     [](const Note& a, const Note& b) { return a.start < b.start; });
    std::stable_sort(m_lane.begin(), m_lane.end(),
                     [](const LaneEvent& a, const LaneEvent& b) { return a.time < b.time; });
    m_reach.reserve(m_notes.size());
    std::uint32_t reach = 0;
    for (const Note& note : m_notes) {
        reach = std::max(reach, std::max(note.end, note.start + 1));
        m_reach.push_back(reach);
    }
    // Whole bars, at least one.
    m_length =
        std::max<std::uint32_t>(1, (length + kClocksPerBar - 1) / kClocksPerBar) * kClocksPerBar;
    if (highest >= 0) {
        m_lowest = lowest;
        m_highest = highest;
    }
}

void CPianoRollModel::SetTrackVisible(int track, bool visible)
{
    if (track >= 0 && track < kTracksPerPart)
        m_visible[static_cast<std::size_t>(track)] = visible;
}

bool CPianoRollModel::IsTrackVisible(int track) const
{
    return track >= 0 && track < kTracksPerPart && m_visible[static_cast<std::size_t>(track)];
}

int CPianoRollModel::TrackNoteCount(int track) const
{
    return track >= 0 && track < kTracksPerPart ? m_trackNotes[static_cast<std::size_t>(track)] : 0;
}

bool CPianoRollModel::TrackHasEvents(int track) const
{
    return track >= 0 && track < kTracksPerPart && m_trackEvents[static_cast<std::size_t>(track)];
}

int CPianoRollModel::VisibleNoteCount() const
{
    int count = 0;
    for (int track = 0; track < kTracksPerPart; ++track)
        if (IsTrackVisible(track))
            count += TrackNoteCount(track);
    return count;
}

int CPianoRollModel::VisibleLaneEventCount() const
{
    return static_cast<int>(std::count_if(m_lane.begin(), m_lane.end(), [this](const LaneEvent& e) {
        return IsTrackVisible(e.track);
    }));
}

int CPianoRollModel::ForEachNoteIn(std::uint32_t from, std::uint32_t to, int low, int high,
                                   const std::function<void(const Note&)>& draw) const
{
    // The first note whose reach passes `from`; none before it sounds there.
    const auto first = std::upper_bound(m_reach.begin(), m_reach.end(), from) - m_reach.begin();
    int drawn = 0;
    for (auto i = static_cast<std::size_t>(first); i < m_notes.size(); ++i) {
        const Note& note = m_notes[i];
        if (note.start >= to)
            break;
        if (std::max(note.end, note.start + 1) <= from || note.pitch < low || note.pitch > high ||
            !m_visible[note.track])
            continue;
        draw(note);
        ++drawn;
    }
    return drawn;
}

int CPianoRollModel::ForEachLaneEventIn(std::uint32_t from, std::uint32_t to,
                                        const std::function<void(const LaneEvent&)>& draw) const
{
    auto it = std::lower_bound(m_lane.begin(), m_lane.end(), from,
                               [](const LaneEvent& e, std::uint32_t t) { return e.time < t; });
    int drawn = 0;
    for (; it != m_lane.end() && it->time < to; ++it) {
        if (!m_visible[it->track])
            continue;
        draw(*it);
        ++drawn;
    }
    return drawn;
}

const CPianoRollModel::Note* CPianoRollModel::NoteAt(std::uint32_t time, int pitch) const
{
    const Note* found = nullptr;
    ForEachNoteIn(time, time + 1, pitch, pitch, [&found](const Note& note) { found = &note; });
    return found;
}

const CPianoRollModel::LaneEvent* CPianoRollModel::LaneEventNear(std::uint32_t time,
                                                                 std::uint32_t tolerance) const
{
    const LaneEvent* best = nullptr;
    std::uint32_t bestDistance = tolerance + 1;
    const std::uint32_t from = time > tolerance ? time - tolerance : 0;
    ForEachLaneEventIn(from, time + tolerance + 1, [&](const LaneEvent& event) {
        const std::uint32_t distance = event.time > time ? event.time - time : time - event.time;
        if (distance < bestDistance) {
            bestDistance = distance;
            best = &event;
        }
    });
    return best;
}

const CMmt8Event* FindRollEvent(const CMmt8Part& part, int track, std::uint32_t index)
{
    if (track < 0 || track >= kTracksPerPart)
        return nullptr;
    const auto& events = part.tracks[static_cast<std::size_t>(track)].events;
    return index < events.size() ? events[index].get() : nullptr;
}

std::string DescribeRollEvent(const CMmt8Event& event, int track)
{
    return FormatText("Track %d, %s\n", track + 1, DescribePosition(event.time).c_str()) +
           ListEventLine(event);
}

} // namespace tarvix
