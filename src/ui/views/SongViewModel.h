#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvix {

class CMmt8Memory;

// What the picture of a song draws, computed from the song and its parts:
// one block per step, placed after the steps before it and as long as its
// part's beats.
class CSongViewModel {
public:
    struct Block {
        int step = 0;
        int part = 0;
        std::uint32_t startBeat = 0;
        std::uint32_t beats = 0; // 0 for an empty part: it takes no time
        std::uint8_t trackMask = 0;
        std::string label; // "03  Bass line" as the tree names the part, "03" unnamed
    };

    void Rebuild(const CMmt8Memory& memory, int song);

    const std::vector<Block>& Blocks() const { return m_blocks; }
    int BlockCount() const { return static_cast<int>(m_blocks.size()); }
    std::uint32_t TotalBeats() const { return m_totalBeats; }
    unsigned Tempo() const { return m_tempo; }
    // The song's length in seconds at its tempo (0 for an empty song).
    double Seconds() const;
    // Index of the first block that ends after beat (or starts at it), for
    // drawing from there; BlockCount() past the end.
    int FirstBlockFrom(std::uint32_t beat) const;

private:
    std::vector<Block> m_blocks;
    std::uint32_t m_totalBeats = 0;
    unsigned m_tempo = 0;
};

// "Step 2: part 12 Drums, 8 beats, tracks 1 3 5, from bar 2" for a tooltip.
std::string DescribeSongBlock(const CSongViewModel::Block& block);

} // namespace tarvix
