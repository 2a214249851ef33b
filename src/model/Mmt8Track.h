#pragma once

#include "model/Mmt8Event.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace tarvix {

class CByteBuffer;

// One of a part's 8 tracks: a forced channel (0 keeps the events' own) and
// its events in time order. The track owns its events; copying a track
// copies every event.
class CMmt8Track {
public:
    CMmt8Track() = default;
    CMmt8Track(const CMmt8Track& other);
    CMmt8Track& operator=(const CMmt8Track& other);
    CMmt8Track(CMmt8Track&&) noexcept = default;
    CMmt8Track& operator=(CMmt8Track&&) noexcept = default;
    ~CMmt8Track() = default;

    // Channel 0, no events.
    void Clear();

    std::uint8_t channel = 0;
    std::vector<std::unique_ptr<CMmt8Event>> events;
};

// Walks device bytes without ever reading past their end.
struct CByteCursor {
    std::span<const std::uint8_t> data;
    std::size_t position = 0;

    std::size_t Remaining() const { return position < data.size() ? data.size() - position : 0; }
};

// Reads one event at the cursor and advances it; none at the end mark, at a
// lead byte of an unknown kind, or where the bytes run out (a damaged track
// ends there rather than reading on).
std::unique_ptr<CMmt8Event> DecodeEvent(CByteCursor& cursor, std::uint16_t& runningTime);

// Clears the track, sets its channel and decodes events from data until the
// end mark or the end of data.
void DecodeTrack(CMmt8Track& track, std::span<const std::uint8_t> data, std::uint8_t channel);
// Appends every event's bytes and the 7-byte end mark carrying endClock.
void EncodeTrack(const CMmt8Track& track, CByteBuffer& out, std::uint16_t endClock = 0);
// Bytes the track takes in the device image, end mark included.
std::uint32_t GetTrackSize(const CMmt8Track& track);
bool GetLastEventTime(const CMmt8Track& track, std::uint16_t& time);
// Removes events at or after endClock and shortens notes that reach past it.
bool TruncateTrack(CMmt8Track& track, std::uint32_t endClock);
// The latest note with this channel and note number, searching backwards.
CMmt8NoteEvent* FindOpenNote(CMmt8Track& track, std::uint8_t channel, std::uint8_t note);
// Replaces target with copies of source's events in [start, end), moved to
// start at 0; the first copy is timed since it opens the track.
bool CopyEventsInWindow(CMmt8Track& target, const CMmt8Track& source, std::uint32_t start,
                        std::uint32_t end);
void AppendEvent(CMmt8Track& track, std::unique_ptr<CMmt8Event> event);
// Adds delta to every event's time, stopping at the first that would leave
// 0..65535; false when it stopped.
bool ShiftTrackTimes(CMmt8Track& track, std::int32_t delta);

} // namespace tarvix
