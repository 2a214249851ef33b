#include "EventBuilders.h"

#include "io/Stream.h"
#include "model/Mmt8Part.h"
#include "model/Mmt8Song.h"
#include "model/RecordPersistence.h"

#include <gtest/gtest.h>

namespace tarvix::test {
namespace {

template <typename Record> Bytes Written(Record& record)
{
    CStream stream;
    Persist(record, stream);
    const auto view = stream.View();
    return Bytes(view.begin(), view.end());
}

// Reads bytes (at least one, or the stream would be a writing one) into record.
template <typename Record> void ReadInto(Record& record, const Bytes& bytes)
{
    CStream stream(bytes);
    ASSERT_FALSE(stream.IsWriting());
    Persist(record, stream);
}

void ReadStep(CMmt8Song& song, int index, const Bytes& bytes)
{
    CStream stream(bytes);
    Persist(song, index, stream);
}

Bytes Uint32(std::uint32_t value)
{
    return {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
            static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 24)};
}

CMmt8Part SamplePart()
{
    CMmt8Part part;
    part.beats = 682;
    part.name = " DRUMS";
    part.tracks[0] = TrackOfEveryKind();
    part.tracks[3] = TrackOf(16, Note(65535, 127, 0xFFFF, 15, 1));
    part.tracks[7].channel = 1;
    return part;
}

CMmt8Song SampleSong()
{
    CMmt8Song song;
    song.tempo = 255;
    song.name = "VERSE";
    song.steps = {{0, 0x00}, {99, 0xFF}, {42, 0x05}};
    return song;
}

::testing::AssertionResult SamePart(const CMmt8Part& a, const CMmt8Part& b)
{
    if (a.beats != b.beats || a.name != b.name)
        return ::testing::AssertionFailure() << "beats or name differ";
    for (std::size_t i = 0; i < a.tracks.size(); ++i)
        if (auto same = SameTrack(a.tracks[i], b.tracks[i]); !same)
            return same << " (track " << i << ")";
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult SameSong(const CMmt8Song& a, const CMmt8Song& b)
{
    if (a.tempo != b.tempo || a.name != b.name || a.steps != b.steps)
        return ::testing::AssertionFailure() << "tempo, name or steps differ";
    return ::testing::AssertionSuccess();
}

TEST(RecordPersistenceTest, TrackIsChannelCountAndEventBytesWithoutEndMark)
{
    CMmt8Track track = TrackOf(3, Note(48, 5, 96, 3, 100));
    EXPECT_EQ(Written(track),
              Concat({{0x03}, Uint32(1), Uint32(7), {0x85, 0x30, 0x00, 0x64, 0x03, 0x00, 0x60}}));

    CMmt8Track empty;
    empty.channel = 5;
    const Bytes emptyBytes = Written(empty);
    EXPECT_EQ(emptyBytes, Concat({{0x05}, Uint32(0), Uint32(0)}));
    CMmt8Track read = TrackOfEveryKind();
    ReadInto(read, emptyBytes);
    EXPECT_EQ(read.channel, 5);
    EXPECT_TRUE(read.events.empty());
}

TEST(RecordPersistenceTest, TrackPartAndSongReadBackAsWritten)
{
    CMmt8Track track = TrackOfEveryKind();
    CMmt8Track trackRead = TrackOf(1, Note(0, 1, 1));
    ReadInto(trackRead, Written(track));
    EXPECT_TRUE(SameTrack(trackRead, track));

    CMmt8Part part = SamplePart();
    CMmt8Part partRead;
    partRead.tracks[5] = TrackOf(2, Note(0, 1, 1));
    ReadInto(partRead, Written(part));
    EXPECT_TRUE(SamePart(partRead, part));

    CMmt8Song song = SampleSong();
    CMmt8Song songRead;
    songRead.steps = {{1, 1}, {2, 2}, {3, 3}, {4, 4}};
    ReadInto(songRead, Written(song));
    EXPECT_TRUE(SameSong(songRead, song));
}

TEST(RecordPersistenceTest, NamesReadAreNormalised)
{
    CMmt8Part part;
    part.name = "ABCDEFGHIJKLMNOP";
    CMmt8Song song;
    song.name = "LEAD   ";
    ReadInto(part, Written(part));
    ReadInto(song, Written(song));
    EXPECT_EQ(part.name, "ABCDEFGHIJKLMN");
    EXPECT_EQ(song.name, "LEAD");
}

// The event count comes from outside: the block bounds how much is decoded.
TEST(RecordPersistenceTest, TrackCountBeyondItsBlockReadsOnlyTheBlock)
{
    CMmt8Track read;
    ReadInto(read, Concat({{0x02}, Uint32(0xFFFFFFFF), Uint32(5), {0x07, 0xE4, 0x00, 0x00, 0x00}}));
    ASSERT_EQ(read.events.size(), 1u);
    EXPECT_EQ(read.events[0]->GetTypeCode(), kControlEventType);
    EXPECT_EQ(read.events[0]->time, 0);
}

TEST(RecordPersistenceTest, StepWritesItsTwoBytesOrNothingPastTheEnd)
{
    CMmt8Song song = SampleSong();
    CStream stream;
    Persist(song, 2, stream);
    EXPECT_EQ(Bytes(stream.View().begin(), stream.View().end()), (Bytes{42, 0x05}));
    for (const int index : {3, 254, -1}) {
        CStream none;
        Persist(song, index, none);
        EXPECT_EQ(none.View().size(), 0u) << index;
    }
}

TEST(RecordPersistenceTest, StepReadOverwritesOrAppendsWhileThereIsRoom)
{
    CMmt8Song song = SampleSong();
    ReadStep(song, 1, Bytes{7, 0x81});
    ReadStep(song, 9, Bytes{8, 0x01});
    EXPECT_EQ(song.steps, (std::vector<Mmt8Step>{{0, 0x00}, {7, 0x81}, {42, 0x05}, {8, 0x01}}));

    CMmt8Song full;
    full.steps.assign(255, Mmt8Step{1, 0xFF});
    ReadStep(full, 255, Bytes{2, 0x0F});
    EXPECT_EQ(full.steps.size(), 255u);
    EXPECT_EQ(full.steps.back(), (Mmt8Step{1, 0xFF}));
}

template <typename Record>
void ExpectEveryCutThrowsAndKeepsTheRecord(Record written, Record target,
                                           ::testing::AssertionResult (*same)(const Record&,
                                                                              const Record&))
{
    const Bytes bytes = Written(written);
    for (std::size_t size = 1; size < bytes.size(); ++size) {
        SCOPED_TRACE(size);
        const Record before = target;
        CStream stream(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)));
        EXPECT_THROW(Persist(target, stream), CStreamException);
        EXPECT_TRUE(same(target, before));
    }
}

TEST(RecordPersistenceTest, TruncatedStreamThrowsAndLeavesTheRecord)
{
    CMmt8Part otherPart;
    otherPart.beats = 3;
    otherPart.name = "KEEP";
    otherPart.tracks[1] = TrackOf(4, Note(1, 2, 3));
    ExpectEveryCutThrowsAndKeepsTheRecord(SamplePart(), otherPart, SamePart);
    ExpectEveryCutThrowsAndKeepsTheRecord(TrackOfEveryKind(), TrackOf(4, Note(1, 2, 3)), SameTrack);
    CMmt8Song otherSong;
    otherSong.tempo = 99;
    otherSong.steps = {{1, 2}};
    ExpectEveryCutThrowsAndKeepsTheRecord(SampleSong(), otherSong, SameSong);

    CMmt8Song song = SampleSong();
    CStream oneByte(Bytes{5});
    EXPECT_THROW(Persist(song, 0, oneByte), CStreamException);
    EXPECT_TRUE(SameSong(song, SampleSong()));
}

TEST(RecordPersistenceTest, StepNamingPart100Throws)
{
    CMmt8Song song = SampleSong();
    CStream step(Bytes{100, 0xFF});
    EXPECT_THROW(Persist(song, 1, step), CStreamException);
    EXPECT_TRUE(SameSong(song, SampleSong()));

    CStream block(Concat({{120}, Uint32(0), Uint32(2), Uint32(4), {5, 0xFF, 100, 0xFF}}));
    EXPECT_THROW(Persist(song, block), CStreamException);
    EXPECT_TRUE(SameSong(song, SampleSong()));
}

} // namespace
} // namespace tarvix::test
