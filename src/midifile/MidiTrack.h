#pragma once

#include "midifile/MidiChunk.h"
#include "midifile/MidiEvent.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tarvix {

// "MTrk": the events of one track in order. Null entries are allowed and
// skipped by everything that walks the events.
class CMidiTrack : public CMidiChunk {
public:
    CMidiTrack() : CMidiChunk(kTrack, "MTrk", 0) {}
    // A deep copy; events of any kind but channel, SysEx and meta are dropped.
    CMidiTrack(const CMidiTrack& other);
    CMidiTrack& operator=(const CMidiTrack& other);
    CMidiTrack(CMidiTrack&&) noexcept = default;
    CMidiTrack& operator=(CMidiTrack&&) noexcept = default;
    ~CMidiTrack() = default;

    // Reads one chunk. The track is good when the chunk is "MTrk" and no
    // delta time or status byte was missing; a malformed event ends the
    // track quietly, keeping the events before it. Only the chunk length
    // ends the events, not an "End of track" event.
    bool Read(CMidiFileStream& stream);
    // Writes the chunk, with running status between channel events of the
    // same status. When the body's length differs from the length field, the
    // field is updated and the chunk head written again.
    void Write(CMidiFileStream& stream);

    void AppendEvent(std::unique_ptr<CMidiEvent> event) { events.push_back(std::move(event)); }

    std::vector<std::unique_ptr<CMidiEvent>> events;
    // Bookkeeping of whoever works on the track: the running absolute time
    // while a format-0 file is split, the device track while importing.
    std::uint32_t spare = 0;
};

// The data of the n-th (from 0) meta event of this type as text; an event
// without data gives an empty text. False when there is no such event. Type 3
// with n = 0 gives the track's name.
bool GetMetaText(const CMidiTrack& track, std::uint8_t type, std::uint32_t n, std::string& text);

// The n-th (from 0) event of this kind (CMidiEvent::kChannel ...), or null.
const CMidiEvent* FindEventOfKind(const CMidiTrack& track, std::uint32_t kind, std::uint32_t n);

} // namespace tarvix
