// Writing, copying, splitting and the queries over a file in memory.
#include "ExportTestSupport.h"

#include "midifile/MidiFileStream.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace tarvix::testing {
namespace {

// Every kind of event, and running status both used and broken off.
CMidiFile MakeRichFile()
{
    return FileOf(1, 96,
                  EventsOf(Meta(0, 0x03, Text("Tempo map")), Meta(0, 0x51, {0x07, 0xA1, 0x20}),
                           Meta(0, 0x58, {4, 2, 24, 8}), Meta(3000, 0x2F)),
                  EventsOf(Channel(0, 0xC3, 19), Channel(0, 0xB3, 7, 100),
                           Channel(96, 0x93, 60, 100), Channel(0, 0x93, 64, 90),
                           Meta(0, 0x01, Text("verse")), Channel(96, 0x93, 60, 0),
                           Channel(0, 0x83, 64, 0), Channel(10, 0xE3, 0x00, 0x40),
                           Channel(10, 0xD3, 33), Channel(10, 0xA3, 60, 5),
                           Sysex(0x1FFFFF, 0xF0, {0x43, 0x10, 0x4C, 0, 0, 0x7E, 0, 0xF7}),
                           Sysex(1, 0xF7, {0xF8}), Meta(0, 0x2F)));
}

TEST(MidiFileWriteTest, RunningStatusOnlyBetweenEqualStatusBytes)
{
    CMidiFile file =
        FileOf(0, 96,
               EventsOf(Channel(0, 0x90, 60, 100), Channel(0, 0x90, 64, 100),
                        Channel(0, 0x91, 67, 100), Meta(0, 0x01, {'x'}), Channel(0, 0x91, 67, 0)));
    EXPECT_EQ(WriteMidi(file),
              Join({HeaderChunk(0, 1, 96),
                    Chunk("MTrk", {0x00, 0x90, 60,   100,  0x00, 64,  100,  0x00, 0x91, 67,
                                   100,  0x00, 0xFF, 0x01, 0x01, 'x', 0x00, 0x91, 67,   0})}));
}

TEST(MidiFileWriteTest, ChunkLengthsArePatchedOnce)
{
    CMidiFile file = MakeRichFile();
    EXPECT_EQ(file.tracks[1]->GetLength(), 0u);
    const Bytes first = WriteMidi(file);
    EXPECT_EQ(file.tracks[0]->GetLength(), 33u);
    EXPECT_EQ(WriteMidi(file), first);

    // A header read with extra bytes is written with length 6.
    CMidiFile longHeader = ReadMidi(Chunk("MThd", {0, 0, 0, 0, 0, 96, 1, 2}));
    EXPECT_EQ(longHeader.header.GetLength(), 8u);
    EXPECT_EQ(WriteMidi(longHeader), HeaderChunk(0, 0, 96));
}

TEST(MidiFileWriteTest, WrittenFileReadsBackTheSame)
{
    CMidiFile file = MakeRichFile();
    const Bytes bytes = WriteMidi(file);
    CMidiFile read = ReadMidi(bytes);
    EXPECT_EQ(ListEvents(read), ListEvents(file));
    EXPECT_EQ(WriteMidi(read), bytes);

    CMidiFile copy;
    copy.Copy(read);
    read.Clear();
    EXPECT_EQ(ListEvents(read), "header 0 0 0\n");
    EXPECT_EQ(ListEvents(copy), ListEvents(file));
    EXPECT_EQ(WriteMidi(copy), bytes);
}

TEST(MidiFileWriteTest, WritesFilesThroughTheStream)
{
    const TempDir folder;
    const std::string path = folder.File("song.mid");
    CMidiFile file = MakeRichFile();
    CMidiFileStream stream;
    ASSERT_TRUE(stream.Open(path, CMidiFileStream::kModeWrite));
    file.Persist(stream);
    stream.Close();
    EXPECT_EQ(ReadAllBytes(path), WriteMidi(file));

    ASSERT_TRUE(stream.Open(path, CMidiFileStream::kModeRead));
    CMidiFile read;
    read.Persist(stream);
    EXPECT_EQ(ListEvents(read), ListEvents(file));
}

TEST(MidiFileWriteTest, WriteRawGivesBareMessages)
{
    CMidiFileStream stream;
    stream.OpenMemoryForWriting();
    const auto note = Channel(5, 0x90, 60, 100);
    note->WriteRaw(stream, nullptr);
    Channel(5, 0x90, 64, 100)->WriteRaw(stream, note.get());
    Sysex(5, 0xF0, {0x43, 0xF7})->WriteRaw(stream, nullptr);
    Sysex(5, 0xF0, {})->WriteRaw(stream, nullptr);
    Meta(5, 0x01, {'a'})->WriteRaw(stream, nullptr);
    const auto written = stream.GetWrittenBytes();
    EXPECT_EQ(Bytes(written.begin(), written.end()),
              (Bytes{0x90, 60, 100, 64, 100, 0xF0, 0x43, 0xF7, 0xFF, 0x01, 'a'}));
}

TEST(MidiFileWriteTest, ExplodeSplitsFormatZeroByChannel)
{
    CMidiFile file =
        FileOf(0, 120,
               EventsOf(Meta(0, 0x03, Text("song")), Channel(10, 0x99, 36, 100),
                        Channel(5, 0x90, 60, 100), Sysex(5, 0xF0, {0x7E, 0xF7}),
                        Channel(20, 0x89, 36, 0), Channel(0, 0x80, 60, 0), Meta(7, 0x2F)));
    ASSERT_TRUE(file.ExplodeType0());
    EXPECT_EQ(ListEvents(file), "header 0 0 120\n"
                                "track\n0 meta 03 73 6f 6e 67\n20 sysex f0 7e f7\n0 meta 2f\n"
                                "track\n15 channel 90 3c 64\n25 channel 80 3c 00\n0 meta 2f\n"
                                "track\n10 channel 99 24 64\n30 channel 89 24 00\n0 meta 2f\n");

    EXPECT_FALSE(file.ExplodeType0()) << "three tracks now";
    CMidiFile formatOne = MakeRichFile();
    const std::string before = ListEvents(formatOne);
    EXPECT_FALSE(formatOne.ExplodeType0());
    EXPECT_EQ(ListEvents(formatOne), before);
}

TEST(MidiFileWriteTest, TempoComesFromTheFirstTrack)
{
    struct Case {
        std::vector<Bytes> tempos;
        std::uint32_t bpm;
    };
    const Case cases[] = {
        {{}, 120},
        {{{0x07, 0xA1, 0x20}}, 120},
        {{{0x0F, 0x42, 0x40}}, 60},
        {{{0x07, 0xA1}, {0x0F, 0x42, 0x40}}, 60},
        {{{0x03, 0xD0, 0x90, 0x00}}, 240},
        {{{0x00, 0x00, 0x00}}, 120},
    };
    for (const Case& c : cases) {
        Events events;
        for (const Bytes& tempo : c.tempos)
            events.push_back(Meta(0, 0x51, tempo));
        const CMidiFile file = FileOf(0, 96, std::move(events));
        EXPECT_EQ(FindTempoBpm(file), c.bpm);
    }
    EXPECT_EQ(FindTempoBpm(CMidiFile()), 120u);
    // A tempo in a later track does not count.
    std::vector<Events> tracks(2);
    tracks[1].push_back(Meta(0, 0x51, {0x0F, 0x42, 0x40}));
    EXPECT_EQ(FindTempoBpm(MakeFile(1, 96, std::move(tracks))), 120u);
}

TEST(MidiFileWriteTest, FindsMetaTextsAndEventsByPosition)
{
    CMidiTrack track;
    track.events = EventsOf(Meta(0, 0x03, Text("Bass")), Channel(0, 0x90, 1, 2),
                            Meta(0, 0x01, Text("one")), Meta(0, 0x01), Channel(0, 0x80, 1, 0));
    track.events.insert(track.events.begin() + 1, nullptr);
    std::string text;
    EXPECT_TRUE(GetMetaText(track, 0x03, 0, text));
    EXPECT_EQ(text, "Bass");
    EXPECT_TRUE(GetMetaText(track, 0x01, 1, text));
    EXPECT_EQ(text, "");
    EXPECT_FALSE(GetMetaText(track, 0x01, 2, text));
    EXPECT_FALSE(GetMetaText(track, 0x05, 0, text));

    EXPECT_EQ(FindEventOfKind(track, CMidiEvent::kChannel, 1), track.events[5].get());
    EXPECT_EQ(FindEventOfKind(track, CMidiEvent::kMeta, 2), track.events[4].get());
    EXPECT_EQ(FindEventOfKind(track, CMidiEvent::kSysex, 0), nullptr);
}

} // namespace
} // namespace tarvix::testing
