// What CSettingsKey does the same way whatever the store beneath it.
#include "settings/SettingsKey.h"

namespace tarvix {

CSettingsKey::CSettingsKey(const std::string& vendor, const std::string& program)
    : m_keyPath("Software"), m_vendor(vendor), m_program(program)
{
    if (!vendor.empty())
        m_keyPath += "\\" + vendor;
    if (!program.empty())
        m_keyPath += "\\" + program;
    // The key exists from the first start on.
    CreateKey();
}

CSettingsKey CSettingsKey::ForProgram()
{
    return CSettingsKey(kVendorName, kProgramName);
}

SettingsStatus CSettingsKey::ReadDwordValue(const std::string& name, std::uint32_t& value,
                                            std::uint32_t defaultValue,
                                            const std::string& subKey) const
{
    value = defaultValue;
    const SettingsStatus status = QueryDwordValue(name, value, subKey);
    // Absent or unreadable: the default goes into the store, deliberately.
    return status == kSettingsWrongValue ? WriteDwordValue(name, defaultValue, subKey) : status;
}

SettingsStatus CSettingsKey::ReadStringValue(const std::string& name, std::string& value,
                                             const std::string& defaultValue,
                                             const std::string& subKey) const
{
    value = defaultValue;
    const SettingsStatus status = QueryStringValue(name, value, subKey);
    return status == kSettingsWrongValue ? WriteStringValue(name, defaultValue, subKey) : status;
}

} // namespace tarvix
