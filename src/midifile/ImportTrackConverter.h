#pragma once

#include "midifile/MidiImportOptions.h"

#include <cstdint>

namespace tarvix {

class CMidiTrack;
class CMmt8Track;

// Clears target and fills it with the device events of one MIDI track:
// notes with the durations their note-offs give them, controllers, programs,
// pitch bends, channel aftertouch and SysEx as the options allow, and the
// channel of the track's channel prefix. Events after the last device clock
// are dropped.
void ConvertMidiTrack(const CMidiTrack& source, std::uint16_t division,
                      const MidiImportOptions& options, CMmt8Track& target);

} // namespace tarvix
