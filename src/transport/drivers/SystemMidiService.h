#pragma once

#include "transport/drivers/MidiDriver.h"

#include <memory>

namespace tarvix {

// The platform's MIDI service: a CMidiService over the backends built into
// this program (on Linux ALSA, then JACK), each listed even when its
// system is not running (it then lists no ports and says why).
std::unique_ptr<IMidiDriver> CreateSystemMidiService();

} // namespace tarvix
