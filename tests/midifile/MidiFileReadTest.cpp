// The reader's leniency: what it keeps from damaged and unusual files.
#include "support/MidiFileBuilders.h"

#include "midifile/MidiFileException.h"
#include "midifile/MidiFileStream.h"
#include "support/FileTestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace tarvix::testing {
namespace {

const Bytes kNoteTrack = Chunk("MTrk", {0x00, 0x90, 0x3C, 0x64, 0x00, 0xFF, 0x2F, 0x00});

TEST(MidiFileReadTest, NotMidiGivesAnAllZeroHeaderAndNoTracks)
{
    for (const Bytes& bytes : {Bytes{}, Text("This is not a MIDI file at all."), kNoteTrack}) {
        const CMidiFile file = ReadMidi(bytes);
        EXPECT_EQ(ListEvents(file), "header 0 0 0\n");
        EXPECT_EQ(file.header.GetId()[2], 'h');
    }
}

TEST(MidiFileReadTest, HeaderLengthMovesTheStream)
{
    // Two extra header bytes are skipped.
    const Bytes longHeader = Join({Chunk("MThd", {0, 0, 0, 1, 0, 96, 0xAA, 0xBB}), kNoteTrack});
    EXPECT_EQ(ReadMidi(longHeader).tracks.size(), 1u);

    // A length of 4 moves back two bytes, into the division, which here
    // starts the track's id.
    const CMidiFile moved = ReadMidi(Join({Text("MThd"),
                                           {0, 0, 0, 4, 0, 1, 0, 1},
                                           Text("MTrk"),
                                           {0, 0, 0, 4, 0x00, 0x90, 0x3C, 0x64}}));
    EXPECT_EQ(moved.header.division, 0x4D54);
    EXPECT_EQ(moved.tracks.size(), 1u);

    // A move before the start of the bytes ends reading.
    const Bytes before =
        Join({Text("MThd"), {0xFF, 0xFF, 0xFF, 0xF0, 0, 1, 0, 1, 0, 96}, kNoteTrack});
    const CMidiFile ended = ReadMidi(before);
    EXPECT_EQ(ended.header.division, 96);
    EXPECT_TRUE(ended.tracks.empty());
}

TEST(MidiFileReadTest, StopsAtTheFirstChunkThatIsNoTrack)
{
    const Bytes unknown =
        Join({HeaderChunk(1, 3, 96), kNoteTrack, Chunk("XFIH", {1, 2}), kNoteTrack});
    EXPECT_EQ(ReadMidi(unknown).tracks.size(), 1u);
    const Bytes secondHeader = Join(
        {HeaderChunk(1, 2, 96), kNoteTrack, Chunk("MThd", {0x00, 0x90, 0x3C, 0x64}), kNoteTrack});
    EXPECT_EQ(ReadMidi(secondHeader).tracks.size(), 1u);
}

TEST(MidiFileReadTest, RunningStatusFollowsMetaAndSysexToo)
{
    const CMidiFile file = ReadMidi(Join(
        {HeaderChunk(0, 1, 96), Chunk("MTrk", {0x00, 0xFF, 0x01, 0x01, 'a', 0x00, 0x03, 0x01, 'b',
                                               0x00, 0xF0, 0x01, 0xF7, 0x00, 0x02, 0x7E, 0xF7})}));
    EXPECT_EQ(ListEvents(file), "header 0 1 96\ntrack\n"
                                "0 meta 01 61\n"
                                "0 meta 03 62\n"
                                "0 sysex f0 f7\n"
                                "0 sysex f0 7e f7\n");
}

TEST(MidiFileReadTest, DeltaTimesKeepTheReadersLimits)
{
    // Four delta bytes: three make 0x4000, the fourth is a running-status
    // data byte.
    const CMidiFile four =
        ReadMidi(Join({HeaderChunk(0, 1, 96),
                       Chunk("MTrk", {0x00, 0x90, 0x3C, 0x64, 0x81, 0x80, 0x80, 0x00, 0x40})}));
    EXPECT_EQ(ListEvents(four), "header 0 1 96\ntrack\n0 channel 90 3c 64\n"
                                "16384 channel 90 00 40\n");

    // A delta of 65535 is taken for a failed read: the track is dropped,
    // and reading ends with it.
    const CMidiFile sentinel = ReadMidi(Join(
        {HeaderChunk(1, 3, 96), kNoteTrack,
         Chunk("MTrk", {0x00, 0x90, 0x3C, 0x64, 0x83, 0xFF, 0x7F, 0x80, 0x3C, 0x00}), kNoteTrack}));
    EXPECT_EQ(sentinel.tracks.size(), 1u);
}

TEST(MidiFileReadTest, DamageInsideAnEventKeepsTheEventsBefore)
{
    const Bytes header = HeaderChunk(0, 1, 96);
    struct Case {
        const char* name;
        Bytes track;
        std::size_t tracks;
        std::size_t events;
    };
    const Case cases[] = {
        {"cut inside an event",
         Join({Text("MTrk"), {0, 0, 0, 8, 0x00, 0x90, 0x3C, 0x64, 0x00, 0x90, 0x3C}}), 1, 1},
        {"cut before a status", Join({Text("MTrk"), {0, 0, 0, 8, 0x00, 0x90, 0x3C, 0x64, 0x00}}), 0,
         0},
        {"cut in a delta time", Join({Text("MTrk"), {0, 0, 0, 8, 0x00, 0x90, 0x3C, 0x64, 0x81}}), 0,
         0},
        // 2 MB declared in a file of a few bytes: refused without allocating.
        {"SysEx longer than the file",
         Chunk("MTrk", {0x00, 0x90, 0x3C, 0x64, 0x00, 0xF0, 0xFF, 0xFF, 0x7F, 0x43, 0xF7}), 1, 1},
        {"meta longer than the file", Chunk("MTrk", {0x00, 0xFF, 0x03, 0x05, 'a'}), 1, 0},
        {"meta without its type",
         Join({Text("MTrk"), {0, 0, 0, 6, 0x00, 0x90, 0x3C, 0x64, 0x00, 0xFF}}), 1, 1},
        {"data byte without a status", Chunk("MTrk", {0x00, 0x3C, 0x64}), 1, 0},
    };
    for (const Case& c : cases) {
        const CMidiFile file = ReadMidi(Join({header, c.track}));
        ASSERT_EQ(file.tracks.size(), c.tracks) << c.name;
        if (c.tracks != 0) {
            EXPECT_EQ(file.tracks[0]->events.size(), c.events) << c.name;
        }
    }
}

TEST(MidiFileReadTest, OnlyTheChunkLengthEndsATrack)
{
    const CMidiFile file = ReadMidi(
        Join({HeaderChunk(0, 1, 96),
              Chunk("MTrk", {0x00, 0xFF, 0x2F, 0x00, 0x10, 0x80, 0x3C, 0x40}), kNoteTrack}));
    ASSERT_EQ(file.tracks.size(), 2u);
    EXPECT_EQ(file.tracks[0]->events.size(), 2u);
    EXPECT_EQ(file.tracks[0]->GetLength(), 8u);
}

TEST(MidiFileReadTest, FileFailuresThrowTheFileStreamsMessage)
{
    CMidiFileStream stream;
    try {
        stream.Open("/nonexistent/folder/song.mid", CMidiFileStream::kModeRead);
        FAIL() << "no exception";
    } catch (const CMidiFileException& exception) {
        EXPECT_EQ(exception.GetMessage(),
                  FileMessage("open", "/nonexistent/folder/song.mid", expected::kMissingFolder));
    }
    EXPECT_FALSE(stream.Open("song.mid", 3));
    EXPECT_EQ(stream.GetMode(), 0);
}

} // namespace
} // namespace tarvix::testing
