#pragma once

#include "midifile/MidiSelection.h"

#include <cstdint>
#include <string>

namespace tarvix {

class CMidiFile;
class CMmt8Memory;

inline constexpr const char* kNothingToExportParts =
    "Nothing to export: the selected parts are empty.\n";
inline constexpr const char* kNothingToExportSongs =
    "Nothing to export: the selected songs play no part with beats.\n";
// The import's words for the same empty choice of track rows.
inline constexpr const char* kNoTracksToExport = "No tracks selected.\n";

// What the user chose beyond the selection.
struct MidiExportOptions {
    // Beats per minute for the whole file, kMinTempo-kMaxTempo; anything
    // else keeps each song's own tempo, and 120 for parts.
    std::uint32_t tempo = 0;
};

// The Standard MIDI File a selection exports to: format 1, 96 ticks per
// beat (one tick per device clock), a first track of names, time
// signatures, tempi and markers, then one track per device track. The
// channel events sound as the device plays them; parts keep everything else
// the import needs to give them back. docs/import-export.md has the whole
// mapping. False, with the message, when the selection holds nothing to
// export.
bool BuildExportFile(const CMmt8Memory& memory, const MidiSelection& selection, CMidiFile& file,
                     std::string& error, const MidiExportOptions& options = {});

// Builds the file and writes it at path, through a temporary file that
// replaces the old one only once it is whole. False with the message:
// nothing to export, or the writer's sentence (which names the file).
bool RunExport(const CMmt8Memory& memory, const MidiSelection& selection, const std::string& path,
               std::string& error, const MidiExportOptions& options = {});

} // namespace tarvix
