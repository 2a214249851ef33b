#pragma once

#include "model/Mmt8Limits.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tarvix {

class CMmt8Event;
class CMmt8Part;

// What the piano roll draws of one part, computed from the part: its notes
// as spans of clocks on a pitch, and its other events (controllers,
// programs, aftertouch, pitch bend, SysEx) on the lane below. Both lists are
// sorted by time so that drawing a stretch of the time line looks up only
// the events in it.
class CPianoRollModel {
public:
    struct Note {
        std::uint32_t start = 0; // clocks
        std::uint32_t end = 0;   // start + duration; a zero duration still shows
        std::uint8_t pitch = 0;
        std::uint8_t velocity = 0;
        std::uint8_t track = 0;  // 0-7
        std::uint32_t index = 0; // the event's place in its track
    };

    // A non-note event with its height on the lane, 0-127: a controller's
    // value, a program number, a pressure, the pitch bend's MSB.
    struct LaneEvent {
        std::uint32_t time = 0;
        std::uint8_t height = 0;
        std::uint8_t track = 0;
        unsigned type = 0;
        std::uint32_t index = 0;
    };

    // Copies what it draws from the part's events, so a drawing between a
    // change and the next rebuild shows the old part, never freed memory.
    void Rebuild(const CMmt8Part& part);
    void Clear();

    // The time line: the part's beats, or longer when a note reaches past
    // them; at least one bar.
    std::uint32_t LengthClocks() const { return m_length; }
    std::uint32_t Beats() const { return m_beats; }

    void SetTrackVisible(int track, bool visible);
    bool IsTrackVisible(int track) const;
    // Notes per track, whether shown or not (for the legend).
    int TrackNoteCount(int track) const;
    bool TrackHasEvents(int track) const;

    const std::vector<Note>& Notes() const { return m_notes; }
    const std::vector<LaneEvent>& LaneEvents() const { return m_lane; }
    // The notes of the shown tracks: what a drawing of the whole part draws.
    int VisibleNoteCount() const;
    int VisibleLaneEventCount() const;

    // Calls draw for every note of a shown track that sounds somewhere in
    // [from, to) clocks with a pitch in [low, high], in time order; returns
    // how many it called.
    int ForEachNoteIn(std::uint32_t from, std::uint32_t to, int low, int high,
                      const std::function<void(const Note&)>& draw) const;
    int ForEachLaneEventIn(std::uint32_t from, std::uint32_t to,
                           const std::function<void(const LaneEvent&)>& draw) const;

    // The topmost note of a shown track under the point, the latest started
    // first, or null.
    const Note* NoteAt(std::uint32_t time, int pitch) const;
    // The lane event of a shown track nearest to time within tolerance
    // clocks, or null.
    const LaneEvent* LaneEventNear(std::uint32_t time, std::uint32_t tolerance) const;

    // The lowest and highest pitch of any note, for a first view that shows
    // them; 60 and 72 for a part without notes.
    int LowestPitch() const { return m_lowest; }
    int HighestPitch() const { return m_highest; }

private:
    std::vector<Note> m_notes;
    // m_reach[i]: the latest end among notes 0..i, so the first note that
    // can still sound at a time is found by halving.
    std::vector<std::uint32_t> m_reach;
    std::vector<LaneEvent> m_lane;
    std::array<bool, kTracksPerPart> m_visible{true, true, true, true, true, true, true, true};
    std::array<int, kTracksPerPart> m_trackNotes{};
    std::array<bool, kTracksPerPart> m_trackEvents{};
    std::uint32_t m_length = 4 * kClocksPerBeat;
    std::uint32_t m_beats = 0;
    int m_lowest = 60;
    int m_highest = 72;
};

// The event a note or lane event was made from, when the part still has an
// event of that kind there; null otherwise.
const CMmt8Event* FindRollEvent(const CMmt8Part& part, int track, std::uint32_t index);

// The tooltip of an event: its track, its place in bars and beats, and the
// line the track listing shows for it.
std::string DescribeRollEvent(const CMmt8Event& event, int track);

} // namespace tarvix
