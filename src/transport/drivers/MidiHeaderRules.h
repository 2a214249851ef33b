#pragma once

#include "transport/drivers/MidiDriver.h"

namespace tarvix {

// The checks and flag changes every backend applies to a header, so that all
// of them refuse the same misuse with the same code.
MidiResult PrepareMidiHeader(MidiHeader& header);
MidiResult UnprepareMidiHeader(MidiHeader& header);
// Before the driver takes a header (AddBuffer, LongMsg).
MidiResult CheckHeaderToQueue(const MidiHeader& header);
// The driver takes the header / gives it back.
void MarkHeaderQueued(MidiHeader& header);
void MarkHeaderDone(MidiHeader& header);

} // namespace tarvix
