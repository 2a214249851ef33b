#pragma once

#include "model/Mmt8Memory.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tarvix::testing {

// The device's memory nearly full, and busy: about 62 KB of the 64,256 and
// over 10,000 events, whose dump is about 71,000 bytes on the wire.
struct FullMemory {
    CMmt8Memory memory;
    std::vector<std::uint8_t> dump;
    std::uint32_t imageBytes = 0;
    std::size_t parts = 0;
    std::size_t events = 0;
    std::string problem; // empty when the document is what was asked for
};

// The same document on every call (fixed seeds); it takes a moment.
FullMemory MakeFullMemory();

std::size_t CountEvents(const CMmt8Part& part);
std::size_t CountEvents(const CMmt8Memory& memory);

} // namespace tarvix::testing
