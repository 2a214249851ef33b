#include "settings/Settings.h"

#include <utility>

namespace tarvix {

void LoadRange(const CSettingsKey& key, std::uint32_t& value, const std::string& name,
               std::uint32_t min, std::uint32_t max, const std::string& subKey)
{
    std::uint32_t stored = value;
    key.ReadDwordValue(name, stored, value, subKey);
    if (stored >= min && stored <= max)
        value = stored;
}

void LoadBool(const CSettingsKey& key, std::uint32_t& value, const std::string& name,
              const std::string& subKey)
{
    LoadRange(key, value, name, 0, 1, subKey);
}

CSettings::CSettings(CSettingsKey key) : m_key(std::move(key))
{
    for (const SettingDefinition& setting : SettingDefinitions()) {
        switch (setting.type) {
        case SettingType::Bool: LoadBool(m_key, m_values.*setting.number, setting.name); break;
        case SettingType::Range:
            LoadRange(m_key, m_values.*setting.number, setting.name, setting.min, setting.max);
            break;
        case SettingType::String: {
            std::string& text = m_values.*setting.text;
            m_key.ReadStringValue(setting.name, text, std::string(text));
            break;
        }
        }
    }
}

bool CSettings::Save() const
{
    bool saved = true;
    for (const SettingDefinition& setting : SettingDefinitions()) {
        if (!setting.savedAtExit)
            continue;
        const SettingsStatus status =
            setting.type == SettingType::String
                ? m_key.WriteStringValue(setting.name, m_values.*setting.text)
                : m_key.WriteDwordValue(setting.name, m_values.*setting.number);
        saved = saved && status == kSettingsSuccess;
    }
    return saved;
}

} // namespace tarvix
