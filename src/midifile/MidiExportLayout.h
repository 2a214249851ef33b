#pragma once

#include "midifile/MidiSelection.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvix {

class CMmt8Memory;

// One stretch of an exported file's time line: a part, or a song step
// playing one.
struct ExportSegment {
    int part = 0;
    std::uint8_t trackMask = 0xFF;
    std::uint64_t start = 0;
    std::uint64_t length = 0;
    // The text of the marker at its start.
    std::string marker;
};

struct ExportSongStart {
    std::uint64_t tick = 0;
    int song = 0;
};

// Where everything of a selection goes in the file, one tick per clock.
// Parts are laid out to come back through the import: each part as long as
// its beats, or longer when it holds events past them. Songs are laid out as
// the device plays them: each step as long as its part's beats.
struct ExportLayout {
    bool songs = false;
    // The device tracks (0-7) that get a file track, in rising order.
    std::vector<int> tracks;
    std::vector<ExportSegment> segments;
    std::vector<ExportSongStart> songStarts;
    // The end of the last segment; 0 when the selection holds nothing to
    // export: no part with beats, or no song step playing one.
    std::uint64_t length = 0;
};

ExportLayout LayOutExport(const CMmt8Memory& memory, const MidiSelection& selection);

} // namespace tarvix
