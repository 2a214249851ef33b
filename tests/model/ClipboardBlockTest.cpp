// The clipboard block: its layout, reading it whole before anything is
// placed, and placing records in slots without shifting.
#include "EventBuilders.h"

#include "io/Stream.h"
#include "model/ClipboardBlock.h"
#include "model/Mmt8Memory.h"
#include "model/RecordPersistence.h"
#include "support/RandomDocument.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace tarvix::test {
namespace {

void PutUInt32(Bytes& bytes, std::size_t offset, std::uint32_t value)
{
    for (std::size_t i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

Bytes Block(const CMmt8Memory& memory, ClipboardKind kind, int owner, std::vector<int> items)
{
    return WriteClipboardBlock(memory, kind, owner, items);
}

ClipboardRecords Read(const Bytes& block, ClipboardKind kind)
{
    ClipboardRecords records;
    std::string error;
    EXPECT_TRUE(ReadClipboardBlock(block, kind, records, error)) << error;
    return records;
}

// Copies items of kind from source and pastes them into target at start.
int CopyPaste(const CMmt8Memory& source, CMmt8Memory& target, ClipboardKind kind, int owner,
              std::vector<int> items, int start)
{
    ClipboardRecords records = Read(Block(source, kind, owner, std::move(items)), kind);
    return PasteClipboardRecords(target, records, owner, start);
}

class ClipboardBlockTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::mt19937 random(7);
        testing::FillRandomDocument(m_source, random, {60, 10, 20, 40});
        for (int song = 0; song < kSongCount; ++song)
            if (m_source.Song(song).steps.size() >= 3 && m_song < 0)
                m_song = song;
        ASSERT_GE(m_song, 0);
    }

    CMmt8Memory m_source;
    CMmt8Memory m_target;
    int m_song = -1; // a song of the source with at least three steps
};

TEST_F(ClipboardBlockTest, TheBlockIsItsLengthThenTheCountThenTheRecordsInTheOrderGiven)
{
    EXPECT_STREQ(ClipboardFormatFor(ClipboardKind::Parts), "Tarvix_Parts");
    EXPECT_STREQ(ClipboardFormatFor(ClipboardKind::Tracks), "Tarvix_Tracks");
    EXPECT_STREQ(ClipboardFormatFor(ClipboardKind::Songs), "Tarvix_Songs");
    EXPECT_STREQ(ClipboardFormatFor(ClipboardKind::Steps), "Tarvix_Steps");

    CStream expected;
    expected.WriteUInt32(2);
    for (int part : {7, 3}) {
        CMmt8Part copy = m_source.Part(part);
        Persist(copy, expected);
    }
    // Part 120 names nothing and is not counted.
    const Bytes block = Block(m_source, ClipboardKind::Parts, 0, {7, 120, 3});
    ASSERT_EQ(block.size(), 4 + expected.View().size());
    Bytes length(4);
    PutUInt32(length, 0, static_cast<std::uint32_t>(expected.View().size()));
    EXPECT_EQ(Bytes(block.begin(), block.begin() + 4), length);
    EXPECT_EQ(Bytes(block.begin() + 4, block.end()),
              Bytes(expected.View().begin(), expected.View().end()));

    // Steps past the song's end write nothing and are not counted either.
    const Bytes steps = Block(m_source, ClipboardKind::Steps, m_song, {1, 300});
    EXPECT_EQ(steps, (Bytes{6, 0, 0, 0, 1, 0, 0, 0, m_source.Song(m_song).steps[1].part,
                            m_source.Song(m_song).steps[1].trackMask}));
}

TEST_F(ClipboardBlockTest, RecordsBeyondTheLastSlotAreDropped)
{
    std::vector<int> ten = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    EXPECT_EQ(CopyPaste(m_source, m_target, ClipboardKind::Parts, 0, ten, 95), 5);
    EXPECT_EQ(m_target.Part(99).name, m_source.Part(4).name);
    EXPECT_EQ(m_target.Part(94).name, "");
    EXPECT_EQ(CopyPaste(m_source, m_target, ClipboardKind::Songs, 0, ten, 98), 2);
    EXPECT_EQ(CopyPaste(m_source, m_target, ClipboardKind::Tracks, 1, {0, 1, 2}, 6), 2);
    EXPECT_TRUE(SameTrack(m_target.Part(1).tracks[7], m_source.Part(1).tracks[1]));
}

TEST_F(ClipboardBlockTest, StepsOverwriteThenAppendUpTo255)
{
    const auto& source = m_source.Song(m_song).steps;
    // Three steps into a song of two, from step 1: one replaced, two appended.
    CMmt8Memory target;
    target.AppendStep(m_song, 50, 0x01);
    target.AppendStep(m_song, 51, 0x02);
    EXPECT_EQ(CopyPaste(m_source, target, ClipboardKind::Steps, m_song, {0, 1, 2}, 1), 3);
    const std::vector<Mmt8Step> expected = {{50, 0x01}, source[0], source[1], source[2]};
    EXPECT_EQ(target.Song(m_song).steps, expected);
    // A song that is not there takes nothing.
    ClipboardRecords records =
        Read(Block(m_source, ClipboardKind::Steps, m_song, {0}), ClipboardKind::Steps);
    EXPECT_EQ(PasteClipboardRecords(target, records, kSongCount, 0), 0);

    for (int i = 0; i < kMaxSteps - 1; ++i)
        target.AppendStep(m_song, 1, 0xFF);
    ASSERT_EQ(target.Song(m_song).steps.size(), static_cast<std::size_t>(kMaxSteps));
    // In a full song only the step still inside it is replaced.
    EXPECT_EQ(CopyPaste(m_source, target, ClipboardKind::Steps, m_song, {0, 1, 2}, 254), 1);
    EXPECT_EQ(target.Song(m_song).steps.back(), source[0]);
    EXPECT_EQ(target.Song(m_song).steps.size(), static_cast<std::size_t>(kMaxSteps));
}

TEST_F(ClipboardBlockTest, AMalformedBlockIsRefusedWholeWhereverItIsCut)
{
    const Bytes whole = Block(m_source, ClipboardKind::Parts, 0, {3, 7, 12});
    ClipboardRecords kept =
        Read(Block(m_source, ClipboardKind::Parts, 0, {5}), ClipboardKind::Parts);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        // The length field agrees with the bytes: the records themselves are short.
        Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        if (size >= 4)
            PutUInt32(cut, 0, static_cast<std::uint32_t>(size - 4));
        std::string error;
        ClipboardRecords records =
            Read(Block(m_source, ClipboardKind::Parts, 0, {5}), ClipboardKind::Parts);
        ASSERT_FALSE(ReadClipboardBlock(cut, ClipboardKind::Parts, records, error)) << size;
        EXPECT_EQ(error.rfind(kDamagedClipboardBlock, 0), 0u) << error;
        ASSERT_EQ(records.parts.size(), 1u);
        EXPECT_EQ(records.parts[0].name, kept.parts[0].name);
    }
    // A length field that claims more than the block holds.
    Bytes longer = whole;
    PutUInt32(longer, 0, static_cast<std::uint32_t>(whole.size()));
    ClipboardRecords records;
    std::string error;
    EXPECT_FALSE(ReadClipboardBlock(longer, ClipboardKind::Parts, records, error));
    // A count far beyond the records there are.
    Bytes counted = whole;
    PutUInt32(counted, 4, 0xFFFFFFFF);
    EXPECT_FALSE(ReadClipboardBlock(counted, ClipboardKind::Parts, records, error));
    // A step naming a part that does not exist.
    EXPECT_FALSE(ReadClipboardBlock(Bytes{6, 0, 0, 0, 1, 0, 0, 0, 100, 0xFF}, ClipboardKind::Steps,
                                    records, error));
    EXPECT_NE(error.find("part 100 does not exist"), std::string::npos) << error;
}

// Records are held to what the editor could have made, like the beat and
// channel dialogs: one record out of bounds refuses the whole block.
TEST_F(ClipboardBlockTest, RecordsBeyondTheEditorsLimitsRefuseTheBlock)
{
    CMmt8Memory edited = m_source;
    edited.Part(3).beats = kMaxBeats;
    edited.Part(3).tracks[2].channel = kMaxTrackChannel;
    ASSERT_EQ(Read(Block(edited, ClipboardKind::Parts, 0, {3}), ClipboardKind::Parts).parts.size(),
              1u);

    const auto refused = [](const Bytes& block, ClipboardKind kind, const std::string& reason) {
        ClipboardRecords records;
        std::string error;
        EXPECT_FALSE(ReadClipboardBlock(block, kind, records, error)) << reason;
        EXPECT_EQ(error, kDamagedClipboardBlock + reason);
        EXPECT_TRUE(records.parts.empty() && records.tracks.empty());
    };
    edited.Part(7).beats = kMaxBeats + 1;
    refused(Block(edited, ClipboardKind::Parts, 0, {3, 7}), ClipboardKind::Parts,
            "Invalid part: 683 beats, more than 682\n");
    edited.Part(7).beats = 1;
    edited.Part(7).tracks[5].channel = 200;
    refused(Block(edited, ClipboardKind::Parts, 0, {7}), ClipboardKind::Parts,
            "Invalid track: channel 200, more than 16\n");
    refused(Block(edited, ClipboardKind::Tracks, 7, {4, 5}), ClipboardKind::Tracks,
            "Invalid track: channel 200, more than 16\n");
}

TEST_F(ClipboardBlockTest, BytesAfterThePayloadAreIgnored)
{
    // A memory block may be handed over larger than asked for.
    Bytes padded = Block(m_source, ClipboardKind::Steps, m_song, {2});
    padded.insert(padded.end(), 16, 0xEE);
    const ClipboardRecords records = Read(padded, ClipboardKind::Steps);
    ASSERT_EQ(records.steps.size(), 1u);
    EXPECT_EQ(records.steps[0], m_source.Song(m_song).steps[2]);
}

TEST_F(ClipboardBlockTest, OnlyTheRecordsAPasteCouldPlaceAreKept)
{
    std::vector<int> steps(300, 0);
    CMmt8Memory big;
    for (int i = 0; i < kMaxSteps; ++i)
        big.AppendStep(0, static_cast<std::uint8_t>(i % kPartCount), 0xFF);
    // 300 copies of step 0: all read, 255 kept.
    const ClipboardRecords records =
        Read(Block(big, ClipboardKind::Steps, 0, steps), ClipboardKind::Steps);
    EXPECT_EQ(records.count, 300u);
    EXPECT_EQ(records.steps.size(), static_cast<std::size_t>(kMaxSteps));
    std::vector<int> parts(120, 3);
    const ClipboardRecords many =
        Read(Block(m_source, ClipboardKind::Parts, 0, parts), ClipboardKind::Parts);
    EXPECT_EQ(many.count, 120u);
    EXPECT_EQ(many.parts.size(), static_cast<std::size_t>(kPartCount));
}

} // namespace
} // namespace tarvix::test
