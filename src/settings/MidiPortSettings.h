#pragma once

#include "settings/SettingValues.h"
#include "transport/ports/MidiDevices.h"

namespace tarvix {

// What the ports take from the program's settings: both port names with
// their buffer sizes, counts and delays.
PortSettings PortSettingsFor(const SettingValues& values);

} // namespace tarvix
