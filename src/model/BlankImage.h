#pragma once

#include "model/Mmt8Limits.h"

#include <array>
#include <cstdint>

namespace tarvix {

// The global block of an empty device, our own: no parts, no songs, zeroed
// settings, and the two display lines the device shows while it sends.
extern const std::array<std::uint8_t, kGlobalBlockSize> kMmt8InitData;

} // namespace tarvix
