#include "settings/ImportOptionSettings.h"

#include "settings/Settings.h"

#include <array>

namespace tarvix {

namespace {

struct ImportOptionSetting {
    const char* name;
    std::uint32_t MidiImportOptions::*value;
};

constexpr std::array<ImportOptionSetting, 6> kImportOptionSettings = {{
    {"ImportAftertouchEvents", &MidiImportOptions::importAftertouch},
    {"ImportSysexEvents", &MidiImportOptions::importSysex},
    {"ImportMarkersAsParts", &MidiImportOptions::markersAsParts},
    {"ImportSetStartTimeToZero", &MidiImportOptions::startAtZero},
    {"ImportIgnoreChannelSpec", &MidiImportOptions::ignoreChannel},
    {"ImportExplodeType0Midi", &MidiImportOptions::explodeType0},
}};

} // namespace

MidiImportOptions LoadImportOptions(const CSettingsKey& key)
{
    MidiImportOptions options;
    for (const ImportOptionSetting& setting : kImportOptionSettings)
        LoadBool(key, options.*setting.value, setting.name);
    return options;
}

bool StoreImportOptions(const CSettingsKey& key, const MidiImportOptions& options)
{
    bool stored = true;
    for (const ImportOptionSetting& setting : kImportOptionSettings)
        stored =
            key.WriteDwordValue(setting.name, options.*setting.value) == kSettingsSuccess && stored;
    return stored;
}

} // namespace tarvix
