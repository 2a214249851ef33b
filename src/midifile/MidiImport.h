#pragma once

#include "midifile/MidiFile.h"
#include "midifile/MidiImportOptions.h"
#include "model/Mmt8Memory.h"
#include "model/Mmt8Part.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvix {

class CMmt8Memory;

inline constexpr std::uint8_t kNoTargetSong = 0xFF;

// One import: the loaded file, where its tracks go and how. Each track of the
// file carries its device track (1-8, 0 for none) in its spare field, as the
// dialog assigned it (AssignDeviceTracks).
class CMidiImport {
public:
    std::string sourcePath;
    CMidiFile file;
    // The file's ticked tracks converted, before they go to the destinations.
    CMmt8Part staging;
    // Part numbers in order; a part may appear more than once.
    std::vector<int> destinationParts;
    // Bit i set: device track i + 1 may be filled.
    std::uint8_t trackMask = 0;
    std::uint8_t targetSong = kNoTargetSong;
    // Clocks the start-at-zero option moved everything by; 0 when none.
    std::int32_t startShift = 0;
    MidiImportOptions options;
};

// Converts the file into the staging part, names the target song and sets
// its tempo, and copies the staging part into the destinations: cut at the
// file's markers, one window per part, or whole into the first one. No part
// gets more than 682 beats: what lies beyond is cut off. False,
// and the document untouched, when there is no destination. Does not set
// the document's modified flag.
bool RunImport(CMidiImport& request, CMmt8Memory& memory);

// The document as an import would leave it, worked out on a copy so that
// the caller can ask the user before anything changes.
struct CImportPreview {
    CMmt8Memory result;
    std::uint32_t memorySize = 0;
    // Empty when the result fits the device's memory; otherwise one
    // sentence with its size and the excess over kMmt8MemoryCapacity.
    std::string warning;
};

// RunImport on a copy of memory into preview.result, measured against the
// device's capacity. False, as RunImport, when there is no destination. To
// go ahead, the caller moves preview.result into its document.
bool PreviewImport(CMidiImport& request, const CMmt8Memory& memory, CImportPreview& preview);

} // namespace tarvix
