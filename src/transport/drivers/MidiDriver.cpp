#include "transport/drivers/MidiDriver.h"

#include "transport/drivers/MidiPortHandle.h"

namespace tarvix {

// Anchors the virtual tables in one object file.
IMidiDriver::~IMidiDriver() = default;
MidiPortHandle::~MidiPortHandle() = default;

} // namespace tarvix
