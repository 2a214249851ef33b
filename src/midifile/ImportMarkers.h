#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvix {

class CMidiFile;

struct ImportMarker {
    std::uint32_t clock = 0;
    std::string name;
};

// The marker events of every track, by clock; markers at one clock keep the
// file's order. A marker's name is its text without surrounding white space,
// or "Marker N" (N counted from 1 over the file) when nothing is left.
// Markers after the last device clock are left out.
std::vector<ImportMarker> CollectMarkers(const CMidiFile& file);

// Moves every marker by shift clocks, held within the device's clocks.
void ShiftMarkers(std::vector<ImportMarker>& markers, std::int32_t shift);

} // namespace tarvix
