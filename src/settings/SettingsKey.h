#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace tarvix {

// Result of a settings operation; 0 is success.
using SettingsStatus = std::uint32_t;
inline constexpr SettingsStatus kSettingsSuccess = 0;
inline constexpr SettingsStatus kSettingsAccessDenied = 5; // the store cannot be written
inline constexpr SettingsStatus kSettingsInvalidData = 13; // the store's file is malformed
inline constexpr SettingsStatus kSettingsWrongValue =
    0xFFFFFFFF; // absent, or of another type or size

// The program's key in the per-user settings store. This class is the
// store's whole platform interface: SettingsKeyCommon.cpp holds what every
// store shares, and SettingsKey.cpp implements the rest over
// QSettings (a .conf file under $XDG_CONFIG_HOME on Linux, a plist on
// macOS), and a platform may put its own file in its place (the registry
// key HKCU "Software\Quillon\Tarvix" on Windows) with nothing else to change.
//
// The registry's rules are kept where QSettings differs:
// - values are DWORD (unsigned 32-bit), string or binary; a file-based store
//   keeps numbers as text, so a DWORD read takes any value that reads as an
//   unsigned 32-bit number and nothing else;
// - only the user's own store is read, never a system-wide fallback;
// - every operation opens the store, does one thing and closes it again.
// Value names are compared with their case on Linux, unlike the registry;
// the program always spells them the same way.
//
// Sub-keys ("Recent Document List", "a\b") are groups of the store.
class CSettingsKey {
public:
    static constexpr const char* kVendorName = "Quillon";
    static constexpr const char* kProgramName = "Tarvix";

    // The user's store of vendor/program; either may be empty.
    CSettingsKey(const std::string& vendor, const std::string& program);
    // The program's own store: the user's settings.
    static CSettingsKey ForProgram();
    // A store in one INI file, for tests and tools that must leave the
    // user's settings alone.
    static CSettingsKey InFile(const std::string& path);

    // Where the values live: "Software\Quillon\Tarvix", or the file's path.
    const std::string& GetKeyPath() const { return m_keyPath; }

    // Sets value to the default first; a value that is absent or cannot be
    // read as a 32-bit number is written back as the default, deliberately,
    // so the store holds every value after the first start. Returns that
    // write's status in that case.
    SettingsStatus ReadDwordValue(const std::string& name, std::uint32_t& value,
                                  std::uint32_t defaultValue, const std::string& subKey = {}) const;
    // As ReadDwordValue; a string longer than 255 characters counts as a
    // failed read (the registry's 256-byte buffer) and is replaced by the
    // default.
    SettingsStatus ReadStringValue(const std::string& name, std::string& value,
                                   const std::string& defaultValue,
                                   const std::string& subKey = {}) const;
    // Succeeds only for a binary value of exactly bytes.size() bytes, which
    // it copies into bytes; otherwise bytes is left alone and the result is
    // kSettingsWrongValue. Nothing is written back.
    SettingsStatus ReadBinaryValue(const std::string& name, std::span<std::uint8_t> bytes,
                                   const std::string& subKey = {}) const;

    SettingsStatus WriteDwordValue(const std::string& name, std::uint32_t value,
                                   const std::string& subKey = {}) const;
    SettingsStatus WriteStringValue(const std::string& name, const std::string& value,
                                    const std::string& subKey = {}) const;
    SettingsStatus WriteBinaryValue(const std::string& name, std::span<const std::uint8_t> bytes,
                                    const std::string& subKey = {}) const;
    // Removes a value; removing an absent value succeeds.
    SettingsStatus DeleteValue(const std::string& name, const std::string& subKey = {}) const;

private:
    CSettingsKey() = default;
    // Makes sure the key exists in the store, even before a value is written.
    void CreateKey() const;
    // The store's own reads, which the Read functions above build on: the
    // value on success, kSettingsWrongValue when it is absent or unreadable
    // (value then left alone), or the store's error.
    SettingsStatus QueryDwordValue(const std::string& name, std::uint32_t& value,
                                   const std::string& subKey) const;
    SettingsStatus QueryStringValue(const std::string& name, std::string& value,
                                    const std::string& subKey) const;
    // The implementation's own helpers.
    friend struct SettingsKeyAccess;

    std::string m_keyPath;
    std::string m_vendor; // store of the user's vendor/program ...
    std::string m_program;
    std::string m_filePath; // ... or, when set, this INI file
};

} // namespace tarvix
