#pragma once

#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "support/RandomDocument.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace tarvix::testing {

// The document as one dump message; a failure to build it fails the test.
inline std::vector<std::uint8_t> DumpOf(const CMmt8Memory& memory)
{
    std::vector<std::uint8_t> dump;
    std::string error;
    EXPECT_TRUE(BuildDump(memory, dump, error)) << error;
    return dump;
}

// A small random document, the same for the same seed: a few parts and
// songs, quick to send over a simulated cable.
inline void MakeDocument(CMmt8Memory& memory, unsigned seed)
{
    std::mt19937 random(seed);
    FillRandomDocument(memory, random, {5, 10, 5, 20});
}

// That document's dump, as the device sends it.
inline std::vector<std::uint8_t> DumpOf(unsigned seed)
{
    CMmt8Memory memory;
    MakeDocument(memory, seed);
    return DumpOf(memory);
}

// Empty when memory holds the document of that seed.
inline std::string DifferenceFrom(unsigned seed, const CMmt8Memory& memory)
{
    CMmt8Memory expected;
    MakeDocument(expected, seed);
    return DescribeDifference(expected, memory);
}

} // namespace tarvix::testing
