#include "model/SysexDump.h"

#include "demo/DemoDocument.h"
#include "io/ByteBuffer.h"
#include "model/DeviceImage.h"
#include "model/Mmt8Memory.h"
#include "model/SysexPacking.h"
#include "model/SysexParser.h"
#include "support/Bytes.h"
#include "support/FileTestSupport.h"
#include "support/RandomDocument.h"
#include "support/SeededDocuments.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace tarvix {
namespace {

using testing::Bytes;
using testing::Concat;
using testing::DescribeDifference;
using testing::DumpOf;
using ::testing::HasSubstr;

Bytes RandomBytes(std::mt19937& random, std::size_t count)
{
    Bytes bytes(count);
    for (auto& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

CMmt8Memory Demo()
{
    CMmt8Memory memory;
    demo::BuildDemoDocument(memory);
    return memory;
}

CMmt8Memory Random(unsigned seed)
{
    CMmt8Memory memory;
    std::mt19937 random(seed);
    testing::FillRandomDocument(memory, random, {.maxParts = 5, .maxEventsPerTrack = 10});
    return memory;
}

::testing::AssertionResult IsBlank(const CMmt8Memory& memory)
{
    const std::string difference = DescribeDifference(CMmt8Memory{}, memory);
    if (difference.empty())
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << difference;
}

const Bytes kOtherMaker = {0xF0, 0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7};

TEST(SysexPackingTest, UnpackedSizeIsOneGroupMoreThanTheWholeGroups)
{
    const std::pair<std::uint32_t, std::uint32_t> cases[] = {{0, 7},   {1, 7},   {7, 7},    {8, 14},
                                                             {15, 14}, {16, 21}, {606, 532}};
    for (const auto& [packed, unpacked] : cases)
        EXPECT_EQ(UnpackedSize(packed), unpacked) << packed;
}

TEST(SysexPackingTest, BitsTravelMostSignificantFirstSevenToADataByte)
{
    // FF 00 AA 55 01 80 7E as one bit string, cut into 7-bit pieces.
    const Bytes image = {0xFF, 0x00, 0xAA, 0x55, 0x01, 0x80, 0x7E};
    const Bytes packed = {0x7F, 0x40, 0x15, 0x25, 0x28, 0x06, 0x00, 0x7E};
    EXPECT_EQ(PackSysexData(image), packed);
    EXPECT_EQ(UnpackSysexData(packed), Concat(image, Bytes(7, 0)));

    // A final group of r data bytes gives r image bytes, the last taking its
    // low bits from the byte after the group.
    EXPECT_EQ(UnpackSysexData(Bytes{0x55}, 0x7F), (Bytes{0xAB, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(UnpackSysexData(Bytes{0x55, 0x40}, 0x7F), (Bytes{0xAB, 0x03, 0, 0, 0, 0, 0}));
    EXPECT_EQ(UnpackSysexData(Concat(packed, {0x55}), 0x40)[7], 0xAB);
    // And r trailing image bytes pack to r + 1 data bytes, zero padded.
    EXPECT_EQ(PackSysexData(Bytes{0xFF}), (Bytes{0x7F, 0x40}));
    EXPECT_EQ(PackSysexData(Bytes{0x01, 0x02}), (Bytes{0x00, 0x40, 0x40}));
}

TEST(SysexPackingTest, PackThenUnpackGivesTheImageBack)
{
    std::mt19937 random(11);
    for (std::size_t size = 0; size <= 100; ++size) {
        const Bytes image = RandomBytes(random, size);
        const Bytes packed = PackSysexData(image);
        EXPECT_EQ(packed.size(), size + (size + 6) / 7) << size;
        EXPECT_TRUE(std::ranges::all_of(packed, [](std::uint8_t b) { return b < 0x80; }));
        const Bytes unpacked = UnpackSysexData(packed);
        ASSERT_GE(unpacked.size(), size);
        EXPECT_TRUE(std::equal(image.begin(), image.end(), unpacked.begin())) << size;
        if (size % 7 == 0) {
            EXPECT_EQ(unpacked.size(), size + 7) << size;
        }
    }
}

TEST(Mmt8SysexParserTest, DumpsLoadInTurnUntilAMessageIsNotADump)
{
    const CMmt8Memory demo = Demo(), other = Random(2);
    const Bytes dump = DumpOf(demo);
    CMmt8Memory memory;
    std::string error;
    ASSERT_TRUE(LoadSysexData(memory, Concat(DumpOf(other), dump), error)) << error;
    EXPECT_EQ(DescribeDifference(demo, memory), "");

    // Another maker's message, or a byte outside any message, ends the
    // parse; what loaded before it stays.
    for (const Bytes& stop : {kOtherMaker, Bytes{0x55}}) {
        ASSERT_TRUE(LoadSysexData(memory, Concat(Concat(dump, stop), DumpOf(other)), error));
        EXPECT_EQ(DescribeDifference(demo, memory), "");
    }
}

TEST(Mmt8SysexParserTest, MakerBytesOneAndTwoAreNotChecked)
{
    const CMmt8Memory demo = Demo();
    Bytes dump = DumpOf(demo);
    dump[1] = 0x7F;
    dump[2] = 0x7F;

    CMmt8SysexParser parser(dump);
    CMmt8Memory memory;
    EXPECT_EQ(parser.HandleMessage(dump, memory), 1);
    EXPECT_EQ(DescribeDifference(demo, memory), "");

    bool isDump = true;
    EXPECT_STREQ(IdentifySysex(dump, isDump), "unknown");
    EXPECT_FALSE(isDump);
}

TEST(IdentifySysexTest, LabelsReceivedBuffers)
{
    const struct {
        Bytes buffer;
        const char* label;
    } cases[] = {
        {{}, "invalid"},
        {{0x90, 0x3C, 0x40}, "invalid"},
        {{0xF7, 0xF0}, "invalid"},
        {{0xF0, 0x00, 0x00, 0x0E, 0xF7}, "unknown"},
        {{0xF0, 0x00, 0x00, 0x0E, 0x01, 0xF7}, "unknown"},
        {kOtherMaker, "unknown"},
        {{0xF0, 0x00, 0x00, 0x0E, 0x00, 0xF7}, "Alesis MMT8"},
        {DumpOf(CMmt8Memory{}), "Alesis MMT8"},
    };
    for (const auto& c : cases) {
        bool isDump = true;
        EXPECT_STREQ(IdentifySysex(c.buffer, isDump), c.label)
            << ::testing::PrintToString(c.buffer);
        EXPECT_EQ(isDump, std::string(c.label) == "Alesis MMT8");
    }
}

TEST(LoadSysexDataTest, UnloadableBuffersLeaveTheDocumentEmpty)
{
    // A complete dump followed by an unfinished message is refused before
    // the dump loads.
    const Bytes dump = DumpOf(Demo());
    const Bytes buffers[] = {
        {},
        {0x90, 0x3C, 0x40},
        Bytes(dump.begin(), dump.end() - 1),
        Concat(dump, {0xF0, 0x00, 0x00}),
        Concat(kOtherMaker, dump),
        {0xF0, 0x00, 0x00, 0x0E, 0xF7},
        {0xF0, 0x00, 0xF7},
        {0xF0, 0x00, 0x00, 0x0E, 0x00, 0xF7, 0x00},
    };
    for (const Bytes& buffer : buffers) {
        CMmt8Memory memory = Demo();
        std::string error;
        EXPECT_FALSE(LoadSysexData(memory, buffer, error)) << ::testing::PrintToString(buffer);
        EXPECT_EQ(error, "Invalid sysex data\n");
        EXPECT_TRUE(IsBlank(memory));
    }
}

// Dumps cut short, with an F7 put back, or with random packed bytes: each is
// a dump message, so it loads whatever its image holds, reading nothing
// outside it.
TEST(LoadSysexDataTest, DamagedDumpsLoadWithoutReadingOutside)
{
    const Bytes dump = DumpOf(Demo());
    std::vector<Bytes> buffers = {{0xF0, 0x00, 0x00, 0x0E, 0x00, 0xF7}};
    for (std::ptrdiff_t cut = 5; cut < std::ssize(dump); cut += 13)
        buffers.push_back(Concat(Bytes(dump.begin(), dump.begin() + cut), {0xF7}));
    std::mt19937 random(5);
    for (int round = 0; round < 50; ++round) {
        Bytes packed = RandomBytes(random, random() % 2000);
        for (auto& byte : packed)
            byte &= 0x7F;
        buffers.push_back(Concat(Concat({0xF0, 0x00, 0x00, 0x0E, 0x00}, packed), {0xF7}));
    }
    for (const Bytes& buffer : buffers) {
        CMmt8Memory memory;
        std::string error;
        EXPECT_TRUE(LoadSysexData(memory, buffer, error)) << buffer.size();
    }
}

class SysexFileTest : public ::testing::Test {
protected:
    testing::TempDir m_dir;
    std::string m_path = m_dir.File("set.syx");
    std::string m_error;
};

TEST_F(SysexFileTest, FileThatCannotBeOpenedLeavesTheDocumentAsItWas)
{
    const CMmt8Memory demo = Demo();
    CMmt8Memory memory = Demo();
    EXPECT_FALSE(LoadSyxFile(memory, m_path, m_error));
    EXPECT_EQ(m_error, "Can't open file: " + m_path + "\n");
    EXPECT_EQ(DescribeDifference(demo, memory), "");

    // An empty file has nothing to map: it cannot be opened either.
    testing::WriteAllBytes(m_path, {});
    EXPECT_FALSE(LoadSyxFile(memory, m_path, m_error));
    EXPECT_EQ(m_error, "Can't open file: " + m_path + "\n");
    EXPECT_EQ(DescribeDifference(demo, memory), "");
}

TEST_F(SysexFileTest, BytesThatDoNotLoadLeaveTheDocumentReset)
{
    const Bytes dump = DumpOf(Demo());
    const Bytes contents[] = {
        Bytes(dump.begin(), dump.end() - 1),
        Concat(kOtherMaker, dump),
        {0x00},
        {0xF0, 0x00, 0x00, 0x0E, 0xF7},
    };
    for (const Bytes& bytes : contents) {
        testing::WriteAllBytes(m_path, bytes);
        CMmt8Memory memory = Demo();
        EXPECT_FALSE(LoadSyxFile(memory, m_path, m_error)) << bytes.size();
        EXPECT_EQ(m_error, "Invalid sysex file: " + m_path + "\n");
        EXPECT_TRUE(IsBlank(memory));
    }
}

TEST_F(SysexFileTest, SaveReplacesTheFileOrLeavesItUntouched)
{
    const Bytes old = {0xF0, 0x01, 0xF7};
    testing::WriteAllBytes(m_path, old);
    // A document the dump cannot carry never reaches the file.
    CMmt8Memory tooLong;
    tooLong.Song(0).steps.assign(256, Mmt8Step{});
    EXPECT_FALSE(SaveSyxFile(tooLong, m_path, m_error));
    EXPECT_THAT(m_error, HasSubstr("256"));
    EXPECT_EQ(testing::ReadAllBytes(m_path), old);

    ASSERT_TRUE(SaveSyxFile(Demo(), m_path, m_error)) << m_error;
    EXPECT_EQ(testing::ReadAllBytes(m_path), DumpOf(Demo()));
    EXPECT_EQ(testing::FolderEntries(m_dir.Path()), std::set<std::string>{"set.syx"});

    const std::string missing = m_dir.File("gone/set.syx");
    EXPECT_FALSE(SaveSyxFile(Demo(), missing, m_error));
    EXPECT_THAT(m_error, HasSubstr(missing));
    EXPECT_TRUE(m_error.ends_with(testing::SystemText(testing::expected::kMissingFolder) + "\n"))
        << m_error;
    EXPECT_EQ(testing::FolderEntries(m_dir.Path()), std::set<std::string>{"set.syx"});
}

TEST(BuildDumpTest, OneMessageFramingThePackedImageOrNothing)
{
    const CMmt8Memory demo = Demo();
    CByteBuffer image;
    std::string error;
    ASSERT_TRUE(BuildImage(demo, image, error)) << error;
    const Bytes dump = DumpOf(demo);
    const Bytes packed = PackSysexData(image.View());
    ASSERT_EQ(dump.size(), packed.size() + 7);
    EXPECT_EQ(Bytes(dump.begin(), dump.begin() + 5), (Bytes{0xF0, 0x00, 0x00, 0x0E, 0x00}));
    EXPECT_EQ(Bytes(dump.begin() + 5, dump.end() - 2), packed);
    EXPECT_EQ(Bytes(dump.end() - 2, dump.end()), (Bytes{0x00, 0xF7}));

    EXPECT_EQ(DumpOf(CMmt8Memory{}).size(), 530u + 76u + 7u);

    // A document the dump cannot carry produces nothing.
    CMmt8Memory refused;
    refused.Song(9).steps.push_back(Mmt8Step{120, 0xFF});
    Bytes untouched = {1, 2, 3};
    EXPECT_FALSE(BuildDump(refused, untouched, error));
    EXPECT_THAT(error, HasSubstr("Song 09"));
    EXPECT_EQ(untouched, (Bytes{1, 2, 3}));
}

} // namespace
} // namespace tarvix
