#pragma once

#include "midifile/MidiFile.h"

#include <cstdint>

namespace tarvix::bench {

// A busy multi-track Standard MIDI File of about targetBytes when written:
// 16 tracks, one per channel, of notes under running status, controllers,
// pitch bends and programs, with a SysEx message and a marker now and then.
// The seed is fixed: every run measures the same file.
CMidiFile MakeBigMidiFile(std::uint32_t targetBytes);

} // namespace tarvix::bench
