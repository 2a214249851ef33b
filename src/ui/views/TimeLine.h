#pragma once

#include "model/Mmt8Limits.h"

#include <cstdint>
#include <string>

namespace tarvix {

// The device counts in 4/4: a bar line every 4 beats, bars and beats
// numbered from 1 as a musician counts them.
inline constexpr std::uint32_t kBeatsPerBar = 4;
inline constexpr std::uint32_t kClocksPerBar = kBeatsPerBar * kClocksPerBeat;

// "bar 2 beat 3", with the clocks past the beat when it is not on one
// ("bar 1 beat 1 + 48 clocks").
std::string DescribePosition(std::uint32_t clock);

} // namespace tarvix
