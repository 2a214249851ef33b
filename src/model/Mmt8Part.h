#pragma once

#include "model/Mmt8Limits.h"
#include "model/Mmt8Track.h"

#include <array>
#include <cstdint>
#include <string>

namespace tarvix {

// A part: its length in beats (0 = empty, takes no device memory), a name
// and 8 tracks.
class CMmt8Part {
public:
    void Clear();
    bool IsEmpty() const { return beats == 0; }

    std::uint32_t beats = 0;
    std::string name;
    std::array<CMmt8Track, kTracksPerPart> tracks;
};

} // namespace tarvix
