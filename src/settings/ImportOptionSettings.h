#pragma once

#include "midifile/MidiImportOptions.h"
#include "settings/SettingsKey.h"

namespace tarvix {

// The import dialog's options in the settings store: read when the dialog
// opens, written only when it closes with OK. A value that is missing, or
// other than 0 or 1, leaves its default.
MidiImportOptions LoadImportOptions(const CSettingsKey& key);
// True when every value was written.
bool StoreImportOptions(const CSettingsKey& key, const MidiImportOptions& options);

} // namespace tarvix
