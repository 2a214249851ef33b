#include "demo/DemoDocument.h"
#include "io/ByteBuffer.h"
#include "model/DeviceImage.h"
#include "model/DeviceImageLayout.h"
#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "model/SysexDumpFormat.h"
#include "model/SysexPacking.h"
#include "support/RandomDocument.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <random>
#include <span>
#include <string>
#include <vector>

namespace tarvix {
namespace {

using namespace image;
using testing::DescribeDifference;
using testing::FillRandomDocument;
using Bytes = std::vector<std::uint8_t>;

// Dumps the document, loads the dump into a fresh document, and checks that
// nothing changed and that writing what was loaded gives the same bytes.
void ExpectRoundTrip(const CMmt8Memory& memory)
{
    Bytes dump;
    std::string error;
    ASSERT_TRUE(BuildDump(memory, dump, error)) << error;
    const std::size_t size = memory.GetMemorySize();
    EXPECT_EQ(dump.size(), kDumpOverhead + size + (size + 6) / 7);

    CMmt8Memory loaded;
    ASSERT_TRUE(LoadSysexData(loaded, dump, error)) << error;
    EXPECT_EQ(DescribeDifference(memory, loaded), "");
    Bytes again;
    ASSERT_TRUE(BuildDump(loaded, again, error)) << error;
    EXPECT_TRUE(again == dump) << "rewriting a loaded dump changed its bytes";
}

TEST(RoundTripTest, RandomDocumentsSurviveDumpAndLoad)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        CMmt8Memory memory;
        std::mt19937 random(seed);
        FillRandomDocument(memory, random);
        ExpectRoundTrip(memory);
    }
}

TEST(RoundTripTest, SongsUpToTheStepLimit)
{
    CMmt8Memory memory;
    for (int song = 0; song < kSongCount; ++song)
        for (int step = 0; step < kMaxSteps; ++step)
            memory.AppendStep(song, static_cast<std::uint8_t>(step % kPartCount),
                              static_cast<std::uint8_t>(step));
    ExpectRoundTrip(memory);
}

// Clears tracks from the top until song 99's record, always the last one,
// starts within pointer reach.
void TrimToFit(CMmt8Memory& memory)
{
    for (int track = kPartCount * kTracksPerPart - 1;
         memory.GetMemorySize() - memory.GetSongSize(kSongCount - 1) > kLastRecordOffset; --track)
        memory.ClearTrack(track / kTracksPerPart, track % kTracksPerPart);
}

TEST(RoundTripTest, NearlyFullMemory)
{
    int nearlyFull = 0, overCapacity = 0;
    for (unsigned seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        CMmt8Memory memory;
        std::mt19937 random(seed);
        FillRandomDocument(memory, random, {.maxParts = 100, .maxEventsPerTrack = 150});
        TrimToFit(memory);
        nearlyFull += memory.GetMemorySize() > 60000;
        overCapacity += ExceedsCapacity(memory.GetMemorySize());
        ExpectRoundTrip(memory);
    }
    // The seeds must actually reach the interesting sizes.
    EXPECT_GE(nearlyFull, 20);
    EXPECT_GE(overCapacity, 5);
}

TEST(RoundTripTest, DemoDocumentThroughSyxFiles)
{
    CMmt8Memory demo;
    demo::BuildDemoDocument(demo);
    for (std::size_t i = 458; i < kGlobalBlockSize; ++i) // settings and display text
        demo.globalBlock[i] = static_cast<std::uint8_t>(i);
    testing::TempDir dir;
    const std::string first = dir.File("demo.syx"), second = dir.File("again.syx");
    std::string error;
    ASSERT_TRUE(SaveSyxFile(demo, first, error)) << error;

    CMmt8Memory loaded;
    loaded.AppendStep(3, 1, 0xFF); // replaced by the load
    ASSERT_TRUE(LoadSyxFile(loaded, first, error)) << error;
    EXPECT_EQ(DescribeDifference(demo, loaded), "");
    ASSERT_TRUE(SaveSyxFile(loaded, second, error)) << error;
    EXPECT_TRUE(testing::ReadAllBytes(first) == testing::ReadAllBytes(second));
}

std::size_t Big16(std::span<const std::uint8_t> bytes, std::size_t at)
{
    return std::size_t{bytes[at]} << 8 | bytes[at + 1];
}

std::size_t Little16(std::span<const std::uint8_t> bytes, std::size_t at)
{
    return bytes[at] | std::size_t{bytes[at + 1]} << 8;
}

// Lays the records of an image we wrote out again as another writer might:
// songs first in falling number order, then the parts, with stray bytes
// before, between and after them.
Bytes Relayout(std::span<const std::uint8_t> image, std::mt19937& random)
{
    Bytes out(image.begin(), image.begin() + kGlobalBlockSize);
    const auto filler = [&] {
        for (auto count = random() % 40; count > 0; --count)
            out.push_back(static_cast<std::uint8_t>(random()));
    };
    const auto move = [&](std::uint32_t table, int index) {
        const std::size_t entry = table + kPointerSize * static_cast<std::size_t>(index);
        if (image[entry] == 0)
            return;
        const std::size_t from = Big16(image, entry) - kBaseAddress;
        const std::size_t length = Little16(image, from);
        filler();
        const std::size_t address = out.size() + kBaseAddress;
        out[entry] = static_cast<std::uint8_t>(address >> 8);
        out[entry + 1] = static_cast<std::uint8_t>(address & 0xFF);
        out.insert(out.end(), image.begin() + static_cast<std::ptrdiff_t>(from),
                   image.begin() + static_cast<std::ptrdiff_t>(from + length));
    };
    for (int song = kSongCount - 1; song >= 0; --song)
        move(kSongTable, song);
    for (int part = kPartCount - 1; part >= 0; --part)
        move(kPartTable, part);
    filler();
    return out;
}

Bytes DumpOfImage(std::span<const std::uint8_t> image)
{
    Bytes dump(kDumpHeader.begin(), kDumpHeader.end());
    const Bytes packed = PackSysexData(image);
    dump.insert(dump.end(), packed.begin(), packed.end());
    dump.insert(dump.end(), {0x00, kSysexEnd});
    return dump;
}

TEST(RoundTripTest, RecordsLaidOutByAnotherWriterLoadAndRewrite)
{
    for (unsigned seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        CMmt8Memory original;
        std::mt19937 random(seed);
        FillRandomDocument(original, random,
                           {.maxParts = 10, .maxEventsPerTrack = 10, .maxSongs = 10});
        CByteBuffer image;
        std::string error;
        ASSERT_TRUE(BuildImage(original, image, error)) << error;
        const Bytes foreign = Relayout(image.View(), random);

        CMmt8Memory direct;
        EXPECT_EQ(LoadImage(direct, foreign), original.GetMemorySize());
        CMmt8Memory loaded;
        ASSERT_TRUE(LoadSysexData(loaded, DumpOfImage(foreign), error)) << error;
        EXPECT_EQ(DescribeDifference(original, loaded), "");

        Bytes rewritten, expected;
        ASSERT_TRUE(BuildDump(loaded, rewritten, error)) << error;
        ASSERT_TRUE(BuildDump(original, expected, error)) << error;
        EXPECT_TRUE(rewritten == expected);
    }
}

} // namespace
} // namespace tarvix
