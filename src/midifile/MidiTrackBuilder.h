#pragma once

#include "midifile/MidiEvent.h"
#include "midifile/MidiTrack.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace tarvix {

// Collects events at absolute ticks, in any order, and turns them into a
// track of delta times ending with "End of track".
class CMidiTrackBuilder {
public:
    // Among events at one tick, a lower rank comes first; events of equal
    // tick and rank keep the order they were added in.
    static constexpr std::uint8_t kRankMeta = 0;
    static constexpr std::uint8_t kRankNoteOff = 1;
    static constexpr std::uint8_t kRankMessage = 2;

    // Delta times are set by Build; the event's own is ignored.
    void Add(std::uint64_t tick, std::uint8_t rank, std::unique_ptr<CMidiEvent> event);
    void AddMeta(std::uint64_t tick, std::uint8_t type, std::span<const std::uint8_t> data = {});
    void AddChannel(std::uint64_t tick, std::uint8_t rank, std::uint8_t status, std::uint8_t data1,
                    std::uint8_t data2 = 0);

    // The track, with "End of track" at endTick or at the last event,
    // whichever is later. The builder is left empty.
    std::unique_ptr<CMidiTrack> Build(std::uint64_t endTick);

private:
    struct Entry {
        std::uint64_t tick;
        std::uint8_t rank;
        std::unique_ptr<CMidiEvent> event;
    };

    std::vector<Entry> m_entries;
};

} // namespace tarvix
