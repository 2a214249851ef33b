#pragma once

#include "transport/drivers/MidiDriver.h"

#include <string>

namespace tarvix {

// The one-line text every backend gives for a result code.
std::string GetMidiErrorText(MidiResult result);

} // namespace tarvix
