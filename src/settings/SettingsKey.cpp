#include "settings/SettingsKey.h"

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QVariant>

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>

namespace tarvix {

namespace {

// The registry reads strings into a 256-byte buffer, terminator included.
constexpr qsizetype kMaxStringCharacters = 255;

QString ToQt(const std::string& text)
{
    return QString::fromStdString(text);
}

// What a query into a 4-byte area makes of a stored value. The registry
// would copy any value of up to 4 bytes whatever its type; here only values
// that mean a 32-bit number count: numbers, decimal text (a file-based store
// gives its numbers back as text) and 4 bytes of binary, little-endian.
std::optional<std::uint32_t> AsDword(const QVariant& value)
{
    switch (value.metaType().id()) {
    case QMetaType::Int:
        // The Windows registry gives its DWORDs back as signed int.
        return static_cast<std::uint32_t>(value.toInt());
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::QString: {
        bool ok = false;
        const qulonglong number = value.toULongLong(&ok);
        if (ok && number <= std::numeric_limits<std::uint32_t>::max())
            return static_cast<std::uint32_t>(number);
        return std::nullopt;
    }
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        if (bytes.size() != 4)
            return std::nullopt;
        std::uint32_t number = 0;
        for (qsizetype i = 3; i >= 0; --i)
            number = (number << 8) | static_cast<std::uint8_t>(bytes[i]);
        return number;
    }
    default: return std::nullopt; // absent, a list, ...
    }
}

// Text as a string read sees it; a number reads as its decimal text rather
// than as the raw bytes the registry would hand over.
std::optional<QString> AsText(const QVariant& value)
{
    switch (value.metaType().id()) {
    case QMetaType::QString: return value.toString();
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        if (const auto number = AsDword(value))
            return QString::number(*number);
        return std::nullopt;
    default: return std::nullopt;
    }
}

qsizetype CharacterCount(const QString& text)
{
    return text.size() -
           std::count_if(text.begin(), text.end(), [](QChar c) { return c.isLowSurrogate(); });
}

SettingsStatus StatusOf(const QSettings& store)
{
    switch (store.status()) {
    case QSettings::NoError: return kSettingsSuccess;
    case QSettings::AccessError: return kSettingsAccessDenied;
    case QSettings::FormatError: return kSettingsInvalidData;
    }
    return kSettingsWrongValue;
}

} // namespace

// A QSettings store comes into being with its first value, which the first
// load writes anyway.
void CSettingsKey::CreateKey() const {}

CSettingsKey CSettingsKey::InFile(const std::string& path)
{
    CSettingsKey key;
    key.m_keyPath = path;
    key.m_filePath = path;
    return key;
}

struct SettingsKeyAccess {
    // The store, opened afresh at the sub-key for one operation.
    static std::unique_ptr<QSettings> Open(const CSettingsKey& key, const std::string& subKey);
    static SettingsStatus WriteVariant(const CSettingsKey& key, const std::string& name,
                                       const QVariant& value, const std::string& subKey);
};

namespace {
std::unique_ptr<QSettings> Open(const CSettingsKey& key, const std::string& subKey)
{
    return SettingsKeyAccess::Open(key, subKey);
}
} // namespace

std::unique_ptr<QSettings> SettingsKeyAccess::Open(const CSettingsKey& key,
                                                   const std::string& subKey)
{
    auto store = key.m_filePath.empty()
                     ? std::make_unique<QSettings>(ToQt(key.m_vendor), ToQt(key.m_program))
                     : std::make_unique<QSettings>(ToQt(key.m_filePath), QSettings::IniFormat);
    // HKEY_CURRENT_USER only: no system-wide values shine through.
    store->setFallbacksEnabled(false);
    if (!subKey.empty())
        store->beginGroup(ToQt(subKey).replace(QLatin1Char('\\'), QLatin1Char('/')));
    return store;
}

SettingsStatus SettingsKeyAccess::WriteVariant(const CSettingsKey& key, const std::string& name,
                                               const QVariant& value, const std::string& subKey)
{
    const auto store = Open(key, subKey);
    store->setValue(ToQt(name), value);
    store->sync();
    return StatusOf(*store);
}

SettingsStatus CSettingsKey::QueryDwordValue(const std::string& name, std::uint32_t& value,
                                             const std::string& subKey) const
{
    const auto stored = AsDword(Open(*this, subKey)->value(ToQt(name)));
    if (!stored)
        return kSettingsWrongValue;
    value = *stored;
    return kSettingsSuccess;
}

SettingsStatus CSettingsKey::QueryStringValue(const std::string& name, std::string& value,
                                              const std::string& subKey) const
{
    const auto stored = AsText(Open(*this, subKey)->value(ToQt(name)));
    if (!stored || CharacterCount(*stored) > kMaxStringCharacters)
        return kSettingsWrongValue;
    value = stored->toStdString();
    return kSettingsSuccess;
}

SettingsStatus CSettingsKey::ReadBinaryValue(const std::string& name, std::span<std::uint8_t> bytes,
                                             const std::string& subKey) const
{
    const QVariant stored = Open(*this, subKey)->value(ToQt(name));
    if (stored.metaType().id() != QMetaType::QByteArray)
        return kSettingsWrongValue;
    const QByteArray data = stored.toByteArray();
    if (static_cast<std::size_t>(data.size()) != bytes.size())
        return kSettingsWrongValue;
    std::transform(data.begin(), data.end(), bytes.begin(),
                   [](char byte) { return static_cast<std::uint8_t>(byte); });
    return kSettingsSuccess;
}

SettingsStatus CSettingsKey::WriteDwordValue(const std::string& name, std::uint32_t value,
                                             const std::string& subKey) const
{
    return SettingsKeyAccess::WriteVariant(*this, name, QVariant(static_cast<uint>(value)), subKey);
}

SettingsStatus CSettingsKey::WriteStringValue(const std::string& name, const std::string& value,
                                              const std::string& subKey) const
{
    return SettingsKeyAccess::WriteVariant(*this, name, QVariant(ToQt(value)), subKey);
}

SettingsStatus CSettingsKey::WriteBinaryValue(const std::string& name,
                                              std::span<const std::uint8_t> bytes,
                                              const std::string& subKey) const
{
    const QByteArray data(reinterpret_cast<const char*>(bytes.data()),
                          static_cast<qsizetype>(bytes.size()));
    return SettingsKeyAccess::WriteVariant(*this, name, QVariant(data), subKey);
}

SettingsStatus CSettingsKey::DeleteValue(const std::string& name, const std::string& subKey) const
{
    const auto store = Open(*this, subKey);
    store->remove(ToQt(name));
    store->sync();
    return StatusOf(*store);
}

} // namespace tarvix
