#pragma once

#include <cstdint>
#include <vector>

namespace tarvix {

class CMidiTrackBuilder;
class CMmt8Event;

// A device event placed on the time line of an exported file.
struct PlacedEvent {
    std::uint64_t tick = 0;
    const CMmt8Event* event = nullptr;
    // The channel its message goes out on, 0-15 (unused for SysEx pieces).
    std::uint8_t channel = 0;
    // A note sounds up to this tick at most.
    std::uint64_t noteLimit = UINT64_MAX;
};

// Adds the MIDI messages of the events of one file track, in time order
// (events at one tick keep their order). The messages are ordered so that
// a reader giving each note-off to the latest open note of its key (channel
// and note number), as the import does, and one giving it to the earliest,
// as most sequencers do, pair them alike:
// - a note ends where the next note of its key starts if it would sound on
//   past it, since MIDI cannot hold two notes of one key at once;
// - note-offs come before the other messages of their tick, except the
//   note-off of a note without length, which follows its own note-on;
// - a note of velocity 0, which MIDI reads as a note-off, is left out.
// Each run of SysEx pieces at one tick is joined into whole messages; a
// piece holding the 0x80 filler ends its message there.
void AddDeviceEvents(std::vector<PlacedEvent> events, CMidiTrackBuilder& builder);

} // namespace tarvix
