#include "support/MidiFileBuilders.h"

#include "midifile/MidiFileStream.h"
#include "midifile/VarLen.h"

#include <gtest/gtest.h>

namespace tarvix::testing {
namespace {

TEST(VarLenTest, ReadsAtMostThreeBytes)
{
    struct Case {
        Bytes bytes;
        std::uint32_t value;
        std::uint32_t count;
        std::uint32_t left; // bytes the quantity does not take
    };
    const Case cases[] = {
        {{0x00}, 0, 1, 0},
        {{0x7F, 0x55}, 0x7F, 1, 1},
        {{0x81, 0x00}, 0x80, 2, 0},
        {{0xFF, 0xFF, 0x7F}, 0x1FFFFF, 3, 0},
        // A fourth byte is never read: it belongs to what follows.
        {{0x81, 0x80, 0x80, 0x00}, 0x4000, 3, 1},
        {{0xFF, 0xFF, 0xFF, 0x7F}, 0x1FFFFF, 3, 1},
    };
    for (const Case& c : cases) {
        CMidiFileStream stream(c.bytes);
        std::uint32_t value = 0;
        EXPECT_EQ(ReadVarLen(stream, value), c.count);
        EXPECT_EQ(value, c.value);
        EXPECT_EQ(stream.GetRemaining(), c.left);
    }
}

TEST(VarLenTest, RunningOutGivesTheSentinelAndTheBytesRead)
{
    std::uint32_t value = 0;
    const Bytes none;
    CMidiFileStream empty(none);
    EXPECT_EQ(ReadVarLen(empty, value), 0u);
    EXPECT_EQ(value, kVarLenFailed);

    const Bytes cut = {0x81, 0x80};
    CMidiFileStream stream(cut);
    EXPECT_EQ(ReadVarLen(stream, value), 2u);
    EXPECT_EQ(value, 0xFFFFu);

    // A genuine 65535 cannot be told from it.
    const Bytes genuine = {0x83, 0xFF, 0x7F};
    CMidiFileStream third(genuine);
    EXPECT_EQ(ReadVarLen(third, value), 3u);
    EXPECT_EQ(value, kVarLenFailed);
}

TEST(VarLenTest, WritesUpToFourGroups)
{
    struct Case {
        std::uint32_t value;
        Bytes bytes;
    };
    const Case cases[] = {
        {0, {0x00}},
        {0x7F, {0x7F}},
        {0x80, {0x81, 0x00}},
        {0x4000, {0x81, 0x80, 0x00}},
        {0x0FFFFFFF, {0xFF, 0xFF, 0xFF, 0x7F}},
        // Bits above 28 are dropped.
        {0x10000000, {0x80, 0x80, 0x80, 0x00}},
        {0xFFFFFFFF, {0xFF, 0xFF, 0xFF, 0x7F}},
    };
    for (const Case& c : cases) {
        CMidiFileStream stream;
        stream.OpenMemoryForWriting();
        EXPECT_EQ(WriteVarLen(stream, c.value), c.bytes.size());
        const auto written = stream.GetWrittenBytes();
        EXPECT_EQ(Bytes(written.begin(), written.end()), c.bytes) << std::hex << c.value;
    }
}

} // namespace
} // namespace tarvix::testing
