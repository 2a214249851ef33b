#pragma once

#include <cstdint>
#include <vector>

namespace tarvix::bench {

inline constexpr std::uint32_t kNoteOffFileControllers = 60000;
inline constexpr std::uint32_t kNoteOffFileNoteOffs = 60000;

// The bytes of a format-0 Standard MIDI File that once made the import's
// note-off search quadratic: one track of 60,000 controller changes, then
// 60,000 note-offs that match no note, every event 128 ticks after the one
// before at a division that keeps them all within a part's clocks. About
// 600 KB.
std::vector<std::uint8_t> MakeUnmatchedNoteOffFile();

} // namespace tarvix::bench
