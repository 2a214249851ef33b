#pragma once

#include "settings/SettingValues.h"
#include "settings/SettingsKey.h"

#include <cstdint>
#include <string>

namespace tarvix {

// The program's settings. The program owns one for its whole run, made
// before anything else (CSettingsKey::ForProgram()); tests give it a store
// in a file. Construction sets the defaults, then loads every value in
// order, which also writes any missing or unreadable one back with its
// default. Nothing is written after that until Save(), which the program
// calls as it exits: the destructor writes nothing, so an object that is
// only read, or a start that fails, leaves the store as it was.
class CSettings {
public:
    explicit CSettings(CSettingsKey key);

    const SettingValues& Values() const { return m_values; }
    // The Options dialog writes the user's changes here; the store sees
    // them only at Save().
    SettingValues& Values() { return m_values; }
    const CSettingsKey& GetKey() const { return m_key; }

    // Writes every value in load order except the two font values, which
    // are never saved. Failures are not reported to the user; the result
    // says whether every write succeeded.
    bool Save() const;

    // The defaults, without reading any store: what command-line tools use
    // so that their results never depend on the user's settings.
    static SettingValues Defaults() { return {}; }

private:
    CSettingsKey m_key;
    SettingValues m_values;
};

// Reads a 0/1 value with the current one as default; any other number
// leaves value as it was. Also used for the import options.
void LoadBool(const CSettingsKey& key, std::uint32_t& value, const std::string& name,
              const std::string& subKey = {});
// Reads a number with the current one as default; it is taken only when
// min <= number <= max.
void LoadRange(const CSettingsKey& key, std::uint32_t& value, const std::string& name,
               std::uint32_t min, std::uint32_t max, const std::string& subKey = {});

} // namespace tarvix
