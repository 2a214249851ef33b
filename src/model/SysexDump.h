#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tarvix {

class CMmt8Memory;

// Loads a received buffer: the document is reset, then every dump message in
// it loads in turn. False with "Invalid sysex data\n" when the buffer is not
// complete F0..F7 data or its first message is not a dump.
bool LoadSysexData(CMmt8Memory& memory, std::span<const std::uint8_t> buffer, std::string& error);

// Loads a .syx file the same way. A file that cannot be opened leaves the
// document as it was; one that opens but does not load leaves it reset.
bool LoadSyxFile(CMmt8Memory& memory, const std::string& path, std::string& error);

// "Alesis MMT8" (isMmt8Dump set), "unknown" or "invalid", for the receive list.
const char* IdentifySysex(std::span<const std::uint8_t> buffer, bool& isMmt8Dump);

// The document as one complete dump message, as the device would send it.
bool BuildDump(const CMmt8Memory& memory, std::vector<std::uint8_t>& dump, std::string& error);

// Writes the dump to path through a temporary file, so a failure never
// harms the file that was there.
bool SaveSyxFile(const CMmt8Memory& memory, const std::string& path, std::string& error);

} // namespace tarvix
