#include "settings/SettingValues.h"

#include <limits>

namespace tarvix {

namespace {

using Number = std::uint32_t SettingValues::*;
using Text = std::string SettingValues::*;

constexpr bool kSaved = true;
constexpr bool kNeverSaved = false;

constexpr SettingDefinition Bool(const char* name, Number value, std::uint32_t defaultValue)
{
    return {name, SettingType::Bool, value, nullptr, defaultValue, nullptr, 0, 1, kSaved};
}

constexpr SettingDefinition Range(const char* name, Number value, std::uint32_t defaultValue,
                                  std::uint32_t min, std::uint32_t max, bool saved = kSaved)
{
    return {name, SettingType::Range, value, nullptr, defaultValue, nullptr, min, max, saved};
}

constexpr SettingDefinition String(const char* name, Text value, const char* defaultValue,
                                   bool saved = kSaved)
{
    return {name, SettingType::String, nullptr, value, 0, defaultValue, 0, 0, saved};
}

constexpr std::uint32_t kAnyNumber = std::numeric_limits<std::uint32_t>::max();

constexpr SettingDefinition kDefinitions[] = {
    Bool("LoadDeviceOnStart", &SettingValues::loadDeviceOnStart, 0),
    Bool("LoadLastFileOnStart", &SettingValues::loadLastFileOnStart, 0),
    Bool("ShowToolBarButtonText", &SettingValues::showToolBarButtonText, 0),
    Bool("ShowMidiNoteName", &SettingValues::showMidiNoteName, 1),
    Bool("ShowMidiProgramName", &SettingValues::showMidiProgramName, 1),
    Bool("ShowMidiControllerName", &SettingValues::showMidiControllerName, 1),
    String("MidiInDevice", &SettingValues::midiInDevice, ""),
    Range("MidiInBufSize", &SettingValues::midiInBufSize, 256, 64, 65535),
    Range("MidiInBufNumber", &SettingValues::midiInBufNumber, 64, 1, 1024),
    String("MidiOutDevice", &SettingValues::midiOutDevice, ""),
    Range("MidiOutBufSize", &SettingValues::midiOutBufSize, 256, 64, 65535),
    Range("MidiOutBufNumber", &SettingValues::midiOutBufNumber, 64, 1, 1024),
    Range("MidiOutSyxDelay", &SettingValues::midiOutSyxDelay, 100, 0, 1000),
    Range("MidiOutBufDelay", &SettingValues::midiOutBufDelay, 10, 0, 1000),
    String("FixedFontName", &SettingValues::fixedFontName, "Courier", kNeverSaved),
    Range("FixedFontSize", &SettingValues::fixedFontSize, 10, 0, kAnyNumber, kNeverSaved),
};

} // namespace

std::span<const SettingDefinition> SettingDefinitions()
{
    return kDefinitions;
}

SettingValues::SettingValues()
{
    for (const SettingDefinition& setting : kDefinitions) {
        if (setting.type == SettingType::String)
            this->*setting.text = setting.defaultText;
        else
            this->*setting.number = setting.defaultNumber;
    }
}

} // namespace tarvix
