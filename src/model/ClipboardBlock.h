#pragma once

#include "model/Mmt8Part.h"
#include "model/Mmt8Song.h"
#include "model/Mmt8Track.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tarvix {

class CMmt8Memory;

// What Copy and Paste move: the records of one list. The values are the
// node kinds of the lists that show them.
enum class ClipboardKind : int { Parts = 1, Tracks = 2, Songs = 3, Steps = 4 };

inline constexpr const char* kDamagedClipboardBlock =
    "The data on the clipboard is damaged; nothing was pasted.\n";

// The name the kind's block is registered under: "Tarvix_Parts",
// "Tarvix_Tracks", "Tarvix_Songs" or "Tarvix_Steps".
const char* ClipboardFormatFor(ClipboardKind kind);

// The block: the payload's length N (4 bytes, little-endian), then the
// payload, a record count and the records in their stream form. owner is
// the part whose tracks or the song whose steps are copied; items are part,
// track, song or step numbers, written in the order given. An item that
// names nothing is passed over and not counted.
std::vector<std::uint8_t> WriteClipboardBlock(const CMmt8Memory& memory, ClipboardKind kind,
                                              int owner, std::span<const int> items);

// A block's records, read whole before any of them reaches the document.
// Only as many are kept as a paste could ever place.
struct ClipboardRecords {
    ClipboardKind kind = ClipboardKind::Parts;
    std::uint32_t count = 0; // the records the block held
    std::vector<CMmt8Part> parts;
    std::vector<CMmt8Track> tracks;
    std::vector<CMmt8Song> songs;
    std::vector<Mmt8Step> steps;
};

// All or nothing: false, with kDamagedClipboardBlock and the reason, when
// the block is shorter than its length field or its count says, or holds a
// record that does not read. Bytes after the payload are ignored.
bool ReadClipboardBlock(std::span<const std::uint8_t> block, ClipboardKind kind,
                        ClipboardRecords& records, std::string& error);

// Replaces slots in place from start on, never shifting any: parts and songs
// up to 99, tracks of part owner up to track 8, the steps of song owner
// overwritten and then appended while the song has fewer than 255. Records
// beyond the last slot are dropped. The records are moved out. Returns how
// many were placed; does not set the modified flag.
int PasteClipboardRecords(CMmt8Memory& memory, ClipboardRecords& records, int owner, int start);

} // namespace tarvix
