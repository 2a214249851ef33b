#pragma once

#include "settings/SettingsKey.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <QSettings>
#include <QString>
#include <QVariant>

#include <memory>
#include <string>

namespace tarvix::testing {

// A settings store in a fresh INI file, and a second view of the same file
// through QSettings to plant values and to look at what was written.
class SettingsStoreTest : public ::testing::Test {
protected:
    void Plant(const QString& name, const QVariant& value) const
    {
        QSettings store(QString::fromStdString(m_path), QSettings::IniFormat);
        store.setValue(name, value);
    }
    void Remove(const QString& name) const
    {
        QSettings store(QString::fromStdString(m_path), QSettings::IniFormat);
        store.remove(name);
    }
    QVariant Stored(const QString& name) const
    {
        return QSettings(QString::fromStdString(m_path), QSettings::IniFormat).value(name);
    }
    QStringList StoredNames() const
    {
        return QSettings(QString::fromStdString(m_path), QSettings::IniFormat).allKeys();
    }

    TempDir m_dir;
    std::string m_path = m_dir.File("Tarvix.ini");
    CSettingsKey m_key = CSettingsKey::InFile(m_path);
};

} // namespace tarvix::testing
