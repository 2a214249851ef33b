// What an exported file holds: its tracks, names, markers, channels and
// the MIDI messages of every device event, at the ticks meant.
#include "ExportTestSupport.h"

#include "midifile/MidiExport.h"
#include "model/EventBuilders.h"
#include "model/Mmt8Memory.h"
#include "support/FileTestSupport.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace tarvix::testing {
namespace {

using test::Bend;
using test::Make;
using test::Note;
using test::TrackOf;
using test::Untimed;
using Lines = std::vector<std::string>;
using Kind = MidiSelectionKind;

Lines Names(const char* name)
{
    return {std::string("0 meta 03 \"") + name + "\""};
}

// A device track's name and the mark that keeps its place on import.
Lines DeviceTrack(int number)
{
    return {"0 meta 03 \"Track " + std::to_string(number) + "\"", "0 meta 7f 7d 54 61 72 76 69 78"};
}

// A time signature of beats quarter notes a bar.
std::string Bar(std::uint64_t tick, int beats)
{
    return std::to_string(tick) + " meta 58 0" + std::to_string(beats) + " 02 18 08";
}

const std::string kFourFour = Bar(0, 4);
const std::string kTempo120 = "0 meta 51 07 a1 20";

Lines Concat(std::initializer_list<Lines> parts)
{
    Lines all;
    for (const Lines& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

// Part 5, four beats: every kind on track 1 (forced channel 3), a SysEx
// message on track 2, nothing on the others.
void FillVerse(CMmt8Memory& memory)
{
    CMmt8Part& part = memory.Part(5);
    part.beats = 4;
    part.name = "VERSE";
    part.tracks[0] =
        TrackOf(3, Note(0, 60, 96, 0, 100), Untimed(Make<CMmt8ControlEvent>(0, 0, 7, 100)),
                Make<CMmt8ProgramEvent>(48, 1, 5), Make<CMmt8AftertouchEvent>(96, 1, 64),
                Untimed(Bend(96, 0x1234, 2)), Note(300, 62, 200, 0, 90));
    part.tracks[1] = TrackOf(0, Make<CMmt8SysexEvent>(10, 0x41, 0x10, 0x42),
                             Untimed(Make<CMmt8SysexEvent>(10, 0x12, kSysexFiller, kSysexFiller)));
}

TEST(MidiExportTest, APartBecomesANamedFirstTrackAndOneTrackPerDeviceTrack)
{
    CMmt8Memory memory;
    FillVerse(memory);
    const CMidiFile file = Exported(memory, Select(Kind::Part, 5));
    EXPECT_EQ(file.header.format, 1);
    EXPECT_EQ(file.header.division, 96);
    ASSERT_EQ(file.header.trackCount, 9);
    ASSERT_EQ(file.tracks.size(), 9u);

    // Parts play at 120 in bars of four beats.
    EXPECT_EQ(
        Timeline(*file.tracks[0]),
        Concat({Names("VERSE"), {kFourFour, kTempo120, "0 meta 06 \"VERSE\"", "384 meta 2f"}}));
    // The forced channel 3 goes on every channel event, whatever channel it
    // was recorded on, and into a channel prefix for the import. The note-off
    // at 96 comes before the other messages of its tick.
    EXPECT_EQ(Timeline(*file.tracks[1]),
              Concat({DeviceTrack(1),
                      {"0 meta 20 02", "0 92 3c 64", "0 b2 07 64", "48 c2 05", "96 82 3c 40",
                       "96 d2 40", "96 e2 34 12", "300 92 3e 5a", "500 82 3e 40", "500 meta 2f"}}));
    EXPECT_EQ(Timeline(*file.tracks[2]),
              Concat({DeviceTrack(2), {"10 f0 41 10 42 12 f7", "384 meta 2f"}}));
    // An empty device track sends nothing: its name and mark only.
    for (int track = 3; track < 9; ++track)
        EXPECT_EQ(Timeline(*file.tracks[static_cast<std::size_t>(track)]),
                  Concat({DeviceTrack(track), {"384 meta 2f"}}));
}

// One key (channel 0, note 60) played over itself, a note without length,
// a note of velocity 0, and the same note number on channel 1.
TEST(MidiExportTest, NotesOfOneKeyNeverOverlap)
{
    CMmt8Memory memory;
    CMmt8Part& part = memory.Part(0);
    part.beats = 4;
    part.tracks[0] =
        TrackOf(0, Note(0, 60, 200), Untimed(Note(0, 60, 300, 1)), Note(100, 60, 50),
                Note(150, 60, 0), Note(200, 60, 40, 0, 0), Untimed(Note(200, 61, 10, 1)));
    const CMidiFile file = Exported(memory, Select(Kind::Part, 0));
    EXPECT_EQ(Timeline(*file.tracks[1]),
              Concat({DeviceTrack(1),
                      {"0 90 3c 64", "0 91 3c 64", "100 80 3c 40", "100 90 3c 64", "150 80 3c 40",
                       "150 90 3c 64", "150 80 3c 40", "200 91 3d 64", "210 81 3d 40",
                       "300 81 3c 40", "384 meta 2f"}}));
}

TEST(MidiExportTest, SysexPiecesAreJoinedIntoTheirMessages)
{
    CMmt8Memory memory;
    CMmt8Part& part = memory.Part(0);
    part.beats = 1;
    const auto piece = [](std::uint16_t time, std::uint8_t a, std::uint8_t b, std::uint8_t c) {
        return Make<CMmt8SysexEvent>(time, a, b, c);
    };
    constexpr std::uint8_t f = kSysexFiller;
    part.tracks[0] =
        TrackOf(0, piece(0, 0x41, 0x10, 0x42), Untimed(piece(0, 0x12, f, f)),
                Untimed(piece(0, 0x43, 0x10, 0x4C)), Untimed(piece(0, 0, 0, 0x7E)),
                Untimed(piece(0, 0, 0x01, f)), piece(5, 1, 2, 3),
                Untimed(Make<CMmt8ControlEvent>(5, 0, 1, 2)), Untimed(piece(5, 4, 5, 6)),
                piece(6, 7, 8, 9), piece(7, 0x0A, f, 0x0B), piece(8, 0x05, 0xFF, 0x81));
    const CMidiFile file = Exported(memory, Select(Kind::Part, 0));
    EXPECT_EQ(Timeline(*file.tracks[1]),
              Concat({DeviceTrack(1),
                      {"0 f0 41 10 42 12 f7", "0 f0 43 10 4c 00 00 7e 00 01 f7", "5 f0 01 02 03 f7",
                       "5 b0 01 02", "5 f0 04 05 06 f7", "6 f0 07 08 09 f7", "7 f0 0a f7",
                       "8 f0 05 7f 01 f7", "96 meta 2f"}}));
}

TEST(MidiExportTest, PartsFollowEachOtherEachAfterItsMarker)
{
    CMmt8Memory memory;
    memory.Part(2).beats = 2;
    memory.Part(2).name = "INTRO";
    memory.Part(2).tracks[0] = TrackOf(4, Make<CMmt8ProgramEvent>(0, 0, 1));
    memory.Part(7).beats = 1; // unnamed, and an event past its length
    memory.Part(7).tracks[0] = TrackOf(0, Make<CMmt8ProgramEvent>(200, 0, 2));
    memory.Part(9).beats = 1;
    memory.Part(9).name = " END";
    memory.Part(9).tracks[0] = TrackOf(16, Make<CMmt8ProgramEvent>(5, 0, 3));

    const CMidiFile file = Exported(memory, Select(Kind::Parts, 0, {9, 3, 2, 7}));
    // Each part makes a bar of its beats (part 7's grows to hold its event).
    EXPECT_EQ(Timeline(*file.tracks[0]),
              (Lines{Bar(0, 1), kTempo120, "0 meta 06 \" END\"", Bar(96, 2), "96 meta 06 \"INTRO\"",
                     Bar(288, 3), "288 meta 06 \"Part 07\"", "576 meta 2f"}));
    EXPECT_EQ(Timeline(*file.tracks[1]), Concat({DeviceTrack(1),
                                                 {"0 meta 20 0f", "5 cf 03", "96 meta 20 03",
                                                  "96 c3 01", "488 c0 02", "576 meta 2f"}}));
    EXPECT_EQ(Exported(memory, Select(Kind::AllParts)).tracks[0]->events.size(), 8u);
}

// Song 4 plays part 1 whole, track 1 of part 2, then track 2 of part 1.
void FillSong(CMmt8Memory& memory)
{
    CMmt8Part& first = memory.Part(1);
    first.beats = 2;
    first.name = "A";
    first.tracks[0] = TrackOf(5, Note(0, 60, 500), Make<CMmt8ControlEvent>(100, 3, 7, 1));
    first.tracks[1] = TrackOf(0, Note(10, 64, 20, 7), Make<CMmt8ProgramEvent>(200, 7, 9));
    CMmt8Part& second = memory.Part(2);
    second.beats = 1;
    second.name = "B";
    second.tracks[0] = TrackOf(0, Note(0, 62, 48, 9));
    second.tracks[1] = TrackOf(0, Note(0, 62, 48, 9));
    CMmt8Song& song = memory.Song(4);
    song.name = "SONG";
    song.tempo = 0;
    song.steps = {{1, 0xFF}, {2, 0x01}, {1, 0x02}};
}

TEST(MidiExportTest, ASongSoundsAsTheDevicePlaysIt)
{
    CMmt8Memory memory;
    FillSong(memory);
    const CMidiFile file = Exported(memory, Select(Kind::Song, 4));
    ASSERT_EQ(file.tracks.size(), 9u);
    EXPECT_EQ(Timeline(*file.tracks[0]),
              Concat({Names("SONG"),
                      {Bar(0, 2), kTempo120, "0 meta 06 \"A\"", Bar(192, 1), "192 meta 06 \"B\"",
                       Bar(288, 2), "288 meta 06 \"A\"", "480 meta 2f"}}));
    // Forced channel 5 on part 1's first track, its note cut at the part's
    // end; part 2's track is not forced and keeps the note's channel.
    EXPECT_EQ(Timeline(*file.tracks[1]),
              Concat({DeviceTrack(1),
                      {"0 meta 20 04", "0 94 3c 64", "100 b4 07 01", "192 84 3c 40", "192 99 3e 64",
                       "240 89 3e 40", "480 meta 2f"}}));
    // The program at 200 lies past part 1's two beats: the device never plays it.
    EXPECT_EQ(Timeline(*file.tracks[2]), Concat({DeviceTrack(2),
                                                 {"10 97 40 64", "30 87 40 40", "298 97 40 64",
                                                  "318 87 40 40", "480 meta 2f"}}));
    EXPECT_EQ(Timeline(*file.tracks[3]), Concat({DeviceTrack(3), {"480 meta 2f"}}));
}

TEST(MidiExportTest, SongsFollowEachOtherWithTheirTempiAndNames)
{
    CMmt8Memory memory;
    FillSong(memory);
    memory.Song(6).name = "OTHER";
    memory.Song(6).tempo = 90;
    memory.Song(6).steps = {{2, 0xFF}};
    const CMidiFile file = Exported(memory, Select(Kind::Songs, 0, {4, 5, 6}));
    EXPECT_EQ(Timeline(*file.tracks[0]),
              Concat({Names("SONG"),
                      {Bar(0, 2), kTempo120, "0 meta 01 \"SONG\"", "0 meta 06 \"A\"", Bar(192, 1),
                       "192 meta 06 \"B\"", Bar(288, 2), "288 meta 06 \"A\"", Bar(480, 1),
                       "480 meta 51 0a 2c 2a", "480 meta 01 \"OTHER\"", "480 meta 06 \"B\"",
                       "576 meta 2f"}}));
    EXPECT_EQ(Exported(memory, Select(Kind::AllSongs)).tracks[0]->events.size(), 14u);
}

TEST(MidiExportTest, ChosenStepsPlayInTheChosenOrder)
{
    CMmt8Memory memory;
    FillSong(memory);
    const CMidiFile file = Exported(memory, Select(Kind::Steps, 4, {2, 0, 7}));
    EXPECT_EQ(Timeline(*file.tracks[0]), Concat({Names("SONG"),
                                                 {Bar(0, 2), kTempo120, "0 meta 06 \"A\"",
                                                  "192 meta 06 \"A\"", "384 meta 2f"}}));
    EXPECT_EQ(Timeline(*file.tracks[1]), Concat({DeviceTrack(1),
                                                 {"192 meta 20 04", "192 94 3c 64", "292 b4 07 01",
                                                  "384 84 3c 40", "384 meta 2f"}}));
}

TEST(MidiExportTest, ASelectionWithNothingToExportIsRefused)
{
    CMmt8Memory memory;
    memory.Part(3).name = "EMPTY"; // no beats
    memory.Song(2).tempo = 120;    // no steps
    memory.Song(3).tempo = 120;
    memory.Song(3).steps = {{3, 0xFF}};
    const std::pair<MidiSelection, const char*> cases[] = {
        {Select(Kind::AllParts), kNothingToExportParts},
        {Select(Kind::Part, 3), kNothingToExportParts},
        {Select(Kind::Parts, 0, {3, 4, 120}), kNothingToExportParts},
        {Select(Kind::PartTracks, 3, {0}), kNothingToExportParts},
        {Select(Kind::PartTracks, 3, {8}), kNoTracksToExport},
        {Select(Kind::AllSongs), kNothingToExportSongs},
        {Select(Kind::Song, 2), kNothingToExportSongs},
        {Select(Kind::Songs, 0, {2, 3}), kNothingToExportSongs},
        {Select(Kind::Steps, 3, {1, 2}), kNothingToExportSongs},
    };
    for (const auto& [selection, message] : cases) {
        CMidiFile file;
        std::string error;
        EXPECT_FALSE(BuildExportFile(memory, selection, file, error));
        EXPECT_EQ(error, message);
    }
}

// Our reader, like others, takes delta times of three bytes at most and
// takes 65535 for a failed read: longer gaps are bridged.
TEST(MidiExportTest, LongSilencesStayReadable)
{
    CMmt8Memory memory;
    memory.Part(1).beats = 682;
    memory.Part(1).tracks[0] = TrackOf(0, Note(0, 60, 1));
    memory.Part(2).beats = 1;
    memory.Part(2).tracks[0] = TrackOf(0, Note(64, 60, 1));
    memory.Song(0).tempo = 120;
    memory.Song(0).steps.assign(40, Mmt8Step{1, 0x00});
    memory.Song(0).steps.front().trackMask = 0xFF;
    memory.Song(0).steps.back().trackMask = 0xFF;
    const std::uint64_t last = 39 * 65472;

    const auto readBack = [&](const MidiSelection& selection) {
        return ReadMidi(ExportedBytes(memory, selection));
    };
    for (const CMidiFile& file :
         {readBack(Select(Kind::Song, 0)), readBack(Select(Kind::Parts, 0, {1, 2}))})
        for (const auto& track : file.tracks)
            for (const auto& event : track->events)
                EXPECT_TRUE(event->GetDeltaTime() <= 0x1FFFFF && event->GetDeltaTime() != 0xFFFF);

    Lines song = Timeline(*readBack(Select(Kind::Song, 0)).tracks[1]);
    EXPECT_EQ(std::erase(song, std::to_string(1 + 0x1FFFFF) + " meta 01 \"\""), 1u);
    EXPECT_EQ(song, Concat({DeviceTrack(1),
                            {"0 90 3c 64", "1 80 3c 40", std::to_string(last) + " 90 3c 64",
                             std::to_string(last + 1) + " 80 3c 40",
                             std::to_string(last + 65472) + " meta 2f"}}));
    EXPECT_EQ(Timeline(*readBack(Select(Kind::Parts, 0, {1, 2})).tracks[1]),
              Concat({DeviceTrack(1),
                      {"0 90 3c 64", "1 80 3c 40", "65535 meta 01 \"\"", "65536 90 3c 64",
                       "65537 80 3c 40", "65568 meta 2f"}}));
}

TEST(MidiExportTest, WritesTheFileOrSaysWhyNot)
{
    CMmt8Memory memory;
    FillVerse(memory);
    const TempDir folder;
    const std::string path = folder.File("verse.mid");
    WriteAllBytes(path, {0x01, 0x02});
    std::string error;
    ASSERT_TRUE(RunExport(memory, Select(Kind::Part, 5), path, error)) << error;
    EXPECT_EQ(ReadAllBytes(path), ExportedBytes(memory, Select(Kind::Part, 5)));
    EXPECT_EQ(FolderEntries(folder.Path()), std::set<std::string>{"verse.mid"});

    const std::string missing = folder.File("no/such/folder.mid");
    EXPECT_FALSE(RunExport(memory, Select(Kind::Part, 5), missing, error));
    EXPECT_EQ(error, FileMessage("write", missing, expected::kMissingFolder));

    EXPECT_FALSE(RunExport(memory, Select(Kind::Part, 4), path, error));
    EXPECT_EQ(error, kNothingToExportParts);
    EXPECT_EQ(ReadAllBytes(path), ExportedBytes(memory, Select(Kind::Part, 5)));
}

} // namespace
} // namespace tarvix::testing
