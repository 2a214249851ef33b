#pragma once

#include <cstdint>

namespace tarvix {

// The words the program shows for MIDI numbers. Every result points to
// constant storage that lives for the whole run; callers never free or change
// it. Note, program and controller lookups ignore the high bit, so any byte
// maps to a name.

const char* GetNoteName(std::uint8_t note);
const char* GetProgramName(std::uint8_t program);
const char* GetControllerName(std::uint8_t controller);

// Looks at bits 4-6 of the status byte only; 0xF? gives "(unknown)".
const char* GetChannelMessageName(std::uint8_t status);

// Positive counts are sharps, negative counts flats; outside -7..7 gives
// "<invalid>".
const char* GetKeySignatureName(int sharpsOrFlats);

// "major" for mode byte 0, "minor" for any other.
const char* GetModeName(std::uint8_t mode);

// First data byte of a SysEx message; "<unknown>" when no maker has that id.
const char* GetManufacturerName(std::uint8_t id);

} // namespace tarvix
