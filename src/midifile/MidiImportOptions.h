#pragma once

#include <cstdint>

namespace tarvix {

// The import dialog's six check boxes, 0 or 1 each, in the dialog's order.
// The initial values are the defaults the settings store falls back on, and
// what tarvix-cli starts from so that scripts never depend on the user.
struct MidiImportOptions {
    std::uint32_t importAftertouch = 0;
    std::uint32_t importSysex = 0;
    std::uint32_t markersAsParts = 1;
    std::uint32_t startAtZero = 0;
    std::uint32_t ignoreChannel = 0;
    std::uint32_t explodeType0 = 1;

    friend bool operator==(const MidiImportOptions&, const MidiImportOptions&) = default;
};

} // namespace tarvix
