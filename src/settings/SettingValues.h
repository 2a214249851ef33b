#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace tarvix {

// The program's settings as plain values, constructed with their defaults.
// Each value's name, type, default and accepted range are in
// SettingDefinitions() and nowhere else.
struct SettingValues {
    SettingValues();

    std::uint32_t loadDeviceOnStart = 0;
    std::uint32_t loadLastFileOnStart = 0; // wins over loadDeviceOnStart
    std::uint32_t showToolBarButtonText = 0;
    // Kept and edited for the Options dialog; the listings always print names.
    std::uint32_t showMidiNoteName = 0;
    std::uint32_t showMidiProgramName = 0;
    std::uint32_t showMidiControllerName = 0;
    std::string midiInDevice; // empty: no port
    std::uint32_t midiInBufSize = 0;
    std::uint32_t midiInBufNumber = 0;
    std::string midiOutDevice;
    std::uint32_t midiOutBufSize = 0;
    std::uint32_t midiOutBufNumber = 0;
    std::uint32_t midiOutSyxDelay = 0; // ms after each complete SysEx message
    std::uint32_t midiOutBufDelay = 0; // ms after each output buffer
    std::string fixedFontName;
    std::uint32_t fixedFontSize = 0; // points
};

enum class SettingType {
    Bool,  // a number taken only when 0 or 1
    Range, // a number taken only when min <= value <= max, unsigned
    String,
};

struct SettingDefinition {
    const char* name;
    SettingType type;
    std::uint32_t SettingValues::*number; // Bool and Range
    std::string SettingValues::*text;     // String
    std::uint32_t defaultNumber;
    const char* defaultText;
    std::uint32_t min;
    std::uint32_t max;
    // The font values are not: they reach the store only through the first
    // load writing their defaults back, and users change them there.
    bool savedAtExit;
};

// Every setting, in the order they are loaded at start and saved at exit.
std::span<const SettingDefinition> SettingDefinitions();

} // namespace tarvix
