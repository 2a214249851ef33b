#pragma once

#include <cstdint>

namespace tarvix {

class CMidiTrack;

// Exports tag every file track that stands for a device track with a
// sequencer-specific meta event (type 0x7F) of this data: the ID kept for
// non-commercial use, then "Tarvix". A synth never receives a meta event
// and sequencers keep or drop it unheard, yet it tells the import that a
// track without events still holds a device track's place.
inline constexpr std::uint8_t kTypeSequencerSpecific = 0x7F;
inline constexpr std::uint8_t kDeviceTrackMark[] = {0x7D, 'T', 'a', 'r', 'v', 'i', 'x'};

// Whether the track carries the mark.
bool HasDeviceTrackMark(const CMidiTrack& track);

} // namespace tarvix
