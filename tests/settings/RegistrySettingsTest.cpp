// The settings store on the registry, checked against the system's own
// registry (wine's under the Windows build): each test works in a key of
// its own beside the program's and removes it afterwards.
#include "settings/Settings.h"

#include <gtest/gtest.h>

#include <process.h>
#include <windows.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace tarvix {
namespace {

class RegistrySettingsTest : public ::testing::Test {
protected:
    const std::string m_program = "Tarvix test " + std::to_string(_getpid());
    const std::wstring m_path =
        L"Software\\Quillon\\" + std::wstring(m_program.begin(), m_program.end());

    void TearDown() override { ::RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str()); }

    CSettingsKey Key() const { return CSettingsKey("Quillon", m_program); }

    // What the registry holds, read without the store: type and bytes.
    struct Raw {
        DWORD type = REG_NONE;
        std::vector<std::uint8_t> bytes;
        bool present = false;
    };
    Raw Stored(const std::wstring& name, const std::wstring& subKey = {}) const
    {
        const std::wstring path = subKey.empty() ? m_path : m_path + L"\\" + subKey;
        Raw raw;
        DWORD size = 0;
        if (::RegGetValueW(HKEY_CURRENT_USER, path.c_str(), name.c_str(), RRF_RT_ANY, &raw.type,
                           nullptr, &size) != ERROR_SUCCESS)
            return raw;
        raw.bytes.resize(size);
        raw.present =
            ::RegGetValueW(HKEY_CURRENT_USER, path.c_str(), name.c_str(), RRF_RT_ANY | RRF_NOEXPAND,
                           &raw.type, raw.bytes.data(), &size) == ERROR_SUCCESS;
        return raw;
    }
    std::uint32_t StoredDword(const std::wstring& name) const
    {
        const Raw raw = Stored(name);
        EXPECT_EQ(raw.type, static_cast<DWORD>(REG_DWORD));
        std::uint32_t value = 0;
        if (raw.bytes.size() == sizeof value)
            std::memcpy(&value, raw.bytes.data(), sizeof value);
        return value;
    }
    std::wstring StoredString(const std::wstring& name) const
    {
        const Raw raw = Stored(name);
        EXPECT_EQ(raw.type, static_cast<DWORD>(REG_SZ));
        return {reinterpret_cast<const wchar_t*>(raw.bytes.data()),
                raw.bytes.size() / sizeof(wchar_t) - 1};
    }
    void Plant(const std::wstring& name, DWORD type, const void* data, DWORD size) const
    {
        HKEY key = nullptr;
        ASSERT_EQ(::RegCreateKeyExW(HKEY_CURRENT_USER, m_path.c_str(), 0, nullptr, 0,
                                    KEY_ALL_ACCESS, nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        EXPECT_EQ(
            ::RegSetValueExW(key, name.c_str(), 0, type, static_cast<const BYTE*>(data), size),
            ERROR_SUCCESS);
        ::RegCloseKey(key);
    }
};

TEST_F(RegistrySettingsTest, FirstStartFillsTheKeyWithEveryDefault)
{
    const CSettings settings(Key());
    EXPECT_EQ(settings.GetKey().GetKeyPath(), "Software\\Quillon\\" + m_program);
    EXPECT_EQ(StoredDword(L"LoadDeviceOnStart"), 0u);
    EXPECT_EQ(StoredDword(L"ShowMidiNoteName"), 1u);
    EXPECT_EQ(StoredDword(L"MidiInBufSize"), 256u);
    EXPECT_EQ(StoredDword(L"MidiInBufNumber"), 64u);
    EXPECT_EQ(StoredDword(L"MidiOutSyxDelay"), 100u);
    EXPECT_EQ(StoredDword(L"MidiOutBufDelay"), 10u);
    EXPECT_EQ(StoredDword(L"FixedFontSize"), 10u);
    EXPECT_EQ(StoredString(L"MidiInDevice"), L"");
    EXPECT_EQ(StoredString(L"FixedFontName"), L"Courier");
    // The string is stored with its terminating zero.
    EXPECT_EQ(Stored(L"FixedFontName").bytes.size(), 8 * sizeof(wchar_t));

    HKEY key = nullptr;
    ASSERT_EQ(::RegOpenKeyExW(HKEY_CURRENT_USER, m_path.c_str(), 0, KEY_READ, &key), ERROR_SUCCESS);
    DWORD values = 0;
    ::RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &values, nullptr,
                       nullptr, nullptr, nullptr);
    ::RegCloseKey(key);
    EXPECT_EQ(values, 16u);
}

TEST_F(RegistrySettingsTest, UnreadableValuesAreWrittenBackWithTheirDefault)
{
    const CSettingsKey key = Key();
    // Eight bytes do not fit a DWORD; two bytes do, type unchecked.
    const std::uint8_t eight[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    Plant(L"MidiInBufSize", REG_BINARY, eight, sizeof eight);
    std::uint32_t value = 0;
    EXPECT_EQ(key.ReadDwordValue("MidiInBufSize", value, 256), kSettingsSuccess);
    EXPECT_EQ(value, 256u);
    EXPECT_EQ(StoredDword(L"MidiInBufSize"), 256u);

    const std::uint8_t two[2] = {0x34, 0x12};
    Plant(L"Short", REG_BINARY, two, sizeof two);
    EXPECT_EQ(key.ReadDwordValue("Short", value, 0xAB000000), kSettingsSuccess);
    EXPECT_EQ(value, 0xAB001234u);

    // 255 characters fit the program's buffer, 256 do not.
    const std::wstring fits(255, L'\u00E9');
    Plant(L"MidiInDevice", REG_SZ, fits.c_str(), static_cast<DWORD>((fits.size() + 1) * 2));
    std::string name;
    EXPECT_EQ(key.ReadStringValue("MidiInDevice", name, ""), kSettingsSuccess);
    EXPECT_EQ(name.size(), 510u);
    const std::wstring tooLong(256, L'x');
    Plant(L"MidiInDevice", REG_SZ, tooLong.c_str(), static_cast<DWORD>((tooLong.size() + 1) * 2));
    EXPECT_EQ(key.ReadStringValue("MidiInDevice", name, "Port A"), kSettingsSuccess);
    EXPECT_EQ(name, "Port A");
    EXPECT_EQ(StoredString(L"MidiInDevice"), L"Port A");

    // Out of range on load: ignored, not corrected until the values are saved.
    const DWORD ten = 10;
    Plant(L"MidiOutBufSize", REG_DWORD, &ten, sizeof ten);
    CSettings settings(key);
    EXPECT_EQ(settings.Values().midiOutBufSize, 256u);
    EXPECT_EQ(StoredDword(L"MidiOutBufSize"), 10u);
    EXPECT_TRUE(settings.Save());
    EXPECT_EQ(StoredDword(L"MidiOutBufSize"), 256u);
}

TEST_F(RegistrySettingsTest, BinaryValuesAndSubKeys)
{
    const CSettingsKey key = Key();
    const std::array<std::uint8_t, 4> position = {0x2C, 0x01, 0, 0};
    EXPECT_EQ(key.WriteBinaryValue("SplitterPosition", position), kSettingsSuccess);
    EXPECT_EQ(Stored(L"SplitterPosition").type, static_cast<DWORD>(REG_BINARY));
    std::array<std::uint8_t, 4> read{};
    EXPECT_EQ(key.ReadBinaryValue("SplitterPosition", read), kSettingsSuccess);
    EXPECT_EQ(read, position);

    // Another size or another type is refused and leaves the output alone.
    std::array<std::uint8_t, 2> small{9, 9};
    EXPECT_EQ(key.ReadBinaryValue("SplitterPosition", small), kSettingsWrongValue);
    EXPECT_EQ(small, (std::array<std::uint8_t, 2>{9, 9}));
    const DWORD asDword = 300;
    Plant(L"SplitterPosition", REG_DWORD, &asDword, sizeof asDword);
    read = {7, 7, 7, 7};
    EXPECT_EQ(key.ReadBinaryValue("SplitterPosition", read), kSettingsWrongValue);
    EXPECT_EQ(read, (std::array<std::uint8_t, 4>{7, 7, 7, 7}));
    EXPECT_EQ(key.ReadBinaryValue("Missing", read), kSettingsWrongValue);

    EXPECT_EQ(key.WriteStringValue("File1", "C:\\songs\\\xE2\x99\xAA.syx", "Recent Document List"),
              kSettingsSuccess);
    EXPECT_EQ(Stored(L"File1", L"Recent Document List").type, static_cast<DWORD>(REG_SZ));
    std::string file;
    EXPECT_EQ(key.ReadStringValue("File1", file, "", "Recent Document List"), kSettingsSuccess);
    EXPECT_EQ(file, "C:\\songs\\\xE2\x99\xAA.syx");

    EXPECT_EQ(key.DeleteValue("File1", "Recent Document List"), kSettingsSuccess);
    EXPECT_FALSE(Stored(L"File1", L"Recent Document List").present);
    EXPECT_EQ(key.DeleteValue("File1", "Recent Document List"), kSettingsSuccess);
}

} // namespace
} // namespace tarvix
