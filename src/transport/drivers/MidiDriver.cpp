#include "transport/drivers/MidiDriver.h"

namespace tarvix {

// Anchors the interface's virtual table in one object file.
MidiDriver::~MidiDriver() = default;

} // namespace tarvix
