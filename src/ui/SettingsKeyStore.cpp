#include "ui/SettingsKeyStore.h"

#include "settings/SettingsKey.h"

namespace tarvix {

bool CSettingsKeyStore::ReadDword(const QString& subKey, const QString& name, std::uint32_t& value)
{
    std::uint32_t read = value;
    if (m_key.ReadDwordValue(name.toStdString(), read, value, subKey.toStdString()) !=
        kSettingsSuccess)
        return false;
    value = read;
    return true;
}

bool CSettingsKeyStore::ReadString(const QString& subKey, const QString& name, QString& value)
{
    std::string read;
    if (m_key.ReadStringValue(name.toStdString(), read, value.toStdString(),
                              subKey.toStdString()) != kSettingsSuccess)
        return false;
    value = QString::fromStdString(read);
    return true;
}

void CSettingsKeyStore::WriteDword(const QString& subKey, const QString& name, std::uint32_t value)
{
    m_key.WriteDwordValue(name.toStdString(), value, subKey.toStdString());
}

void CSettingsKeyStore::WriteString(const QString& subKey, const QString& name,
                                    const QString& value)
{
    m_key.WriteStringValue(name.toStdString(), value.toStdString(), subKey.toStdString());
}

void CSettingsKeyStore::DeleteValue(const QString& subKey, const QString& name)
{
    m_key.DeleteValue(name.toStdString(), subKey.toStdString());
}

} // namespace tarvix
