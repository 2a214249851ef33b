#pragma once

#include "framework/ValueStore.h"

namespace tarvix {

class CSettingsKey;

// The window helpers' value store over the program's settings key.
class CSettingsKeyStore : public IValueStore {
public:
    explicit CSettingsKeyStore(const CSettingsKey& key) : m_key(key) {}

    bool ReadDword(const QString& subKey, const QString& name, std::uint32_t& value) override;
    bool ReadString(const QString& subKey, const QString& name, QString& value) override;
    void WriteDword(const QString& subKey, const QString& name, std::uint32_t value) override;
    void WriteString(const QString& subKey, const QString& name, const QString& value) override;
    void DeleteValue(const QString& subKey, const QString& name) override;

private:
    const CSettingsKey& m_key;
};

} // namespace tarvix
