#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvix {

// A song step: which part plays and which of its tracks (bit i = track
// index i). Two bytes, the same in memory, in the device image and on the
// clipboard.
struct Mmt8Step {
    std::uint8_t part = 0;
    std::uint8_t trackMask = 0xFF;

    friend bool operator==(const Mmt8Step&, const Mmt8Step&) = default;
};
static_assert(sizeof(Mmt8Step) == 2);

// A song: tempo (0 = empty song), name and up to 255 steps.
class CMmt8Song {
public:
    void Clear();
    bool IsEmpty() const { return tempo == 0; }

    std::uint8_t tempo = 0;
    std::string name;
    std::vector<Mmt8Step> steps;
};

} // namespace tarvix
