// CSettingsKey on Windows: the registry itself, under HKEY_CURRENT_USER.
// Every operation creates (or opens) the key with all-access rights, does
// one value operation and closes the key again, as the program always did.
#include "settings/SettingsKey.h"

#include "io/platform/WideText.h"

#include <algorithm>
#include <array>

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

namespace tarvix {

namespace {

// The program's string buffer held 255 characters and the terminating zero.
constexpr DWORD kStringCharacters = 256;

// An open key that closes itself.
class CRegistryKey {
public:
    explicit CRegistryKey(const std::string& path)
    {
        m_status =
            ::RegCreateKeyExW(HKEY_CURRENT_USER, platform::WideText(path).c_str(), 0, nullptr,
                              REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, &m_key, nullptr);
    }
    ~CRegistryKey()
    {
        if (m_status == ERROR_SUCCESS)
            ::RegCloseKey(m_key);
    }
    CRegistryKey(const CRegistryKey&) = delete;
    CRegistryKey& operator=(const CRegistryKey&) = delete;

    SettingsStatus Status() const { return static_cast<SettingsStatus>(m_status); }
    HKEY Get() const { return m_key; }

    SettingsStatus Query(const std::string& name, DWORD* type, void* data, DWORD* size) const
    {
        return static_cast<SettingsStatus>(
            ::RegQueryValueExW(m_key, platform::WideText(name).c_str(), nullptr, type,
                               static_cast<BYTE*>(data), size));
    }
    SettingsStatus Set(const std::string& name, DWORD type, const void* data, DWORD size) const
    {
        return static_cast<SettingsStatus>(::RegSetValueExW(m_key, platform::WideText(name).c_str(),
                                                            0, type, static_cast<const BYTE*>(data),
                                                            size));
    }

private:
    HKEY m_key = nullptr;
    LSTATUS m_status = ERROR_SUCCESS;
};

std::string Below(const std::string& path, const std::string& subKey)
{
    return subKey.empty() ? path : path + "\\" + subKey;
}

} // namespace

void CSettingsKey::CreateKey() const
{
    const CRegistryKey created(m_keyPath);
}

// A store of its own for each file path, beside the program's key: tests
// and tools that must leave the user's settings alone get a key that
// nothing else uses.
CSettingsKey CSettingsKey::InFile(const std::string& path)
{
    CSettingsKey key;
    key.m_filePath = path;
    std::string name = path;
    std::replace(name.begin(), name.end(), '\\', '/');
    key.m_keyPath =
        std::string("Software\\") + kVendorName + "\\" + kProgramName + " stores\\" + name;
    key.CreateKey();
    return key;
}

SettingsStatus CSettingsKey::QueryDwordValue(const std::string& name, std::uint32_t& value,
                                             const std::string& subKey) const
{
    const CRegistryKey key(Below(m_keyPath, subKey));
    if (key.Status() != kSettingsSuccess)
        return key.Status();
    // Any type that fits four bytes is taken as it is, as ever: a shorter
    // one over the low bytes of what value holds (the default).
    DWORD data = value;
    DWORD size = sizeof data;
    if (key.Query(name, nullptr, &data, &size) != kSettingsSuccess)
        return kSettingsWrongValue; // absent or too large
    value = data;
    return kSettingsSuccess;
}

SettingsStatus CSettingsKey::QueryStringValue(const std::string& name, std::string& value,
                                              const std::string& subKey) const
{
    const CRegistryKey key(Below(m_keyPath, subKey));
    if (key.Status() != kSettingsSuccess)
        return key.Status();
    std::array<wchar_t, kStringCharacters + 1> text{};
    DWORD size = kStringCharacters * sizeof(wchar_t);
    if (key.Query(name, nullptr, text.data(), &size) != kSettingsSuccess)
        return kSettingsWrongValue;
    // The stored bytes need not end with a zero; the buffer has one more
    // character than the query may fill.
    value = platform::NarrowText(std::wstring_view(text.data()));
    return kSettingsSuccess;
}

SettingsStatus CSettingsKey::ReadBinaryValue(const std::string& name, std::span<std::uint8_t> bytes,
                                             const std::string& subKey) const
{
    const CRegistryKey key(Below(m_keyPath, subKey));
    if (key.Status() != kSettingsSuccess)
        return key.Status();
    DWORD type = REG_NONE;
    DWORD size = 0;
    if (key.Query(name, &type, nullptr, &size) != kSettingsSuccess || type != REG_BINARY ||
        size != bytes.size())
        return kSettingsWrongValue;
    return key.Query(name, nullptr, bytes.data(), &size);
}

SettingsStatus CSettingsKey::WriteDwordValue(const std::string& name, std::uint32_t value,
                                             const std::string& subKey) const
{
    const CRegistryKey key(Below(m_keyPath, subKey));
    if (key.Status() != kSettingsSuccess)
        return key.Status();
    const DWORD data = value;
    return key.Set(name, REG_DWORD, &data, sizeof data);
}

SettingsStatus CSettingsKey::WriteStringValue(const std::string& name, const std::string& value,
                                              const std::string& subKey) const
{
    const CRegistryKey key(Below(m_keyPath, subKey));
    if (key.Status() != kSettingsSuccess)
        return key.Status();
    // The terminating zero is counted in the size.
    const std::wstring text = platform::WideText(value);
    return key.Set(name, REG_SZ, text.c_str(),
                   static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

SettingsStatus CSettingsKey::WriteBinaryValue(const std::string& name,
                                              std::span<const std::uint8_t> bytes,
                                              const std::string& subKey) const
{
    const CRegistryKey key(Below(m_keyPath, subKey));
    if (key.Status() != kSettingsSuccess)
        return key.Status();
    return key.Set(name, REG_BINARY, bytes.data(), static_cast<DWORD>(bytes.size()));
}

SettingsStatus CSettingsKey::DeleteValue(const std::string& name, const std::string& subKey) const
{
    const CRegistryKey key(Below(m_keyPath, subKey));
    if (key.Status() != kSettingsSuccess)
        return key.Status();
    const LSTATUS status = ::RegDeleteValueW(key.Get(), platform::WideText(name).c_str());
    return status == ERROR_FILE_NOT_FOUND ? kSettingsSuccess : static_cast<SettingsStatus>(status);
}

} // namespace tarvix
