// The conversion of MIDI tracks into device tracks and its distribution
// into parts and songs.
#include "ExportTestSupport.h"
#include "model/EventBuilders.h"

#include "midifile/ImportClock.h"
#include "midifile/ImportTrackConverter.h"
#include "midifile/ImportTrackList.h"
#include "midifile/MidiImport.h"
#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"

#include <gtest/gtest.h>

#include <random>

namespace tarvix::testing {
namespace {

using test::Bend;
using test::Make;
using test::Note;
using test::SameTrack;
using test::TrackOf;
using test::Untimed;
CMmt8Track Convert(Events events, MidiImportOptions options = {}, std::uint16_t division = 96)
{
    CMidiTrack source;
    source.events = std::move(events);
    CMmt8Track target;
    target.channel = 9; // converting starts from a cleared track
    ConvertMidiTrack(source, division, options, target);
    return target;
}

// A request for these parts, its tracks ticked and assigned as the dialog starts.
CMidiImport Request(CMidiFile file, std::vector<int> parts, std::uint8_t mask = 0xFF)
{
    CMidiImport request;
    request.sourcePath = "/songs/demo take.mid";
    request.file = std::move(file);
    request.destinationParts = std::move(parts);
    request.trackMask = mask;
    AssignDeviceTracks(request.file, GetInitialTicks(request.file), mask);
    return request;
}

TEST(ImportClockTest, RoundsToTheNearestClockWithExactHalvesDown)
{
    EXPECT_EQ(TicksToClocks(5, 480), 1u);
    EXPECT_EQ(TicksToClocks(15, 576), 2u); // 2.5
    EXPECT_EQ(TicksToClocks(16, 576), 3u); // 2.67
    EXPECT_EQ(TicksToClocks(3, 576), 0u);  // 0.5
    EXPECT_EQ(TicksToClocks(9, 576), 1u);  // 1.5
    EXPECT_EQ(TicksToClocks(120, 0), 96u); // division 0 counts as 120
    EXPECT_EQ(TicksToClocks(5, 0), 4u);
}

TEST(ImportConvertTest, NoteOffsGiveTheLatestMatchingNoteItsDuration)
{
    const CMmt8Track track = Convert(
        EventsOf(Channel(0, 0x90, 60, 100), Channel(0, 0x91, 62, 90), Channel(48, 0x90, 60, 80),
                 Channel(48, 0x90, 60, 0),  // note on with velocity 0 ends the note of clock 48
                 Channel(0, 0x81, 60, 0),   // another channel: no such note there
                 Channel(48, 0x80, 60, 64), // the note of clock 48 again, not the first one
                 Channel(0, 0x91, 62, 0),   // at clock 144
                 Channel(0, 0x90, 64, 100), Channel(0, 0x80, 64, 0))); // ends where it starts
    EXPECT_TRUE(
        SameTrack(track, TrackOf(0, Note(0, 60, 1, 0, 100), Untimed(Note(0, 62, 144, 1, 90)),
                                 Note(48, 60, 96, 0, 80), Note(144, 64, 1, 0, 100))));
}

// The note-off look-up answers as a backward search of the track does, on
// notes that overlap, repeat, share clocks and end on other channels.
TEST(ImportConvertTest, NoteOffsMatchWhatABackwardSearchFinds)
{
    std::mt19937 random(11);
    for (int round = 0; round < 20; ++round) {
        Events events;
        CMmt8Track expected;
        std::uint32_t clock = 0;
        for (int i = 0; i < 400; ++i) {
            const auto delta = static_cast<std::uint32_t>(random() % 3 == 0 ? random() % 40 : 0);
            const auto channel = static_cast<std::uint8_t>(random() % 2);
            const auto number = static_cast<std::uint8_t>(60 + random() % 3);
            const bool on = random() % 2 == 0;
            const auto velocity = static_cast<std::uint8_t>(random() % 4 == 0 ? 0 : 90);
            clock += delta;
            events.push_back(Channel(delta, static_cast<std::uint8_t>((on ? 0x90 : 0x80) | channel),
                                     number, velocity));
            if (on && velocity > 0) {
                auto note = Note(static_cast<std::uint16_t>(clock), number, 1, channel, velocity);
                AppendEvent(expected, std::move(note));
            } else if (CMmt8NoteEvent* open = FindOpenNote(expected, channel, number);
                       open != nullptr && clock > open->time) {
                open->duration = static_cast<std::uint16_t>(clock - open->time);
            }
        }
        const CMmt8Track track = Convert(std::move(events));
        ASSERT_EQ(track.events.size(), expected.events.size());
        for (std::size_t i = 0; i < track.events.size(); ++i)
            ASSERT_EQ(static_cast<const CMmt8NoteEvent&>(*track.events[i]).duration,
                      static_cast<const CMmt8NoteEvent&>(*expected.events[i]).duration)
                << round << " " << i;
    }
}

TEST(ImportConvertTest, EachKindBecomesItsDeviceEventAndTheRestIsDropped)
{
    const auto events = [] {
        return EventsOf(Channel(0, 0xB2, 7, 100), Channel(0, 0xB2, 121, 0),
                        Channel(0, 0xB2, 122, 0), Channel(0, 0xB2, 123, 0), // mode messages
                        Channel(0, 0xB2, 126, 1), Channel(0, 0xB2, 127, 0), Channel(10, 0xC3, 5),
                        Channel(0, 0xA3, 60, 40), // poly aftertouch
                        Channel(0, 0xD3, 77), Channel(0, 0xE4, 0x7F, 0x01),
                        Meta(0, CMidiMetaEvent::kTypeTempo, {7, 0xA1, 0x20}));
    };
    // Delta 10 at division 96 is 10 clocks.
    EXPECT_TRUE(SameTrack(Convert(events()), TrackOf(0, Make<CMmt8ControlEvent>(0, 2, 7, 100),
                                                     Untimed(Make<CMmt8ControlEvent>(0, 2, 121, 0)),
                                                     Make<CMmt8ProgramEvent>(10, 3, 5),
                                                     Untimed(Bend(10, 0x017F, 4)))));

    MidiImportOptions aftertouch;
    aftertouch.importAftertouch = 1;
    const CMmt8Track withAftertouch = Convert(events(), aftertouch);
    ASSERT_EQ(withAftertouch.events.size(), 5u);
    EXPECT_TRUE(test::SameEvent(*withAftertouch.events[3],
                                *Untimed(Make<CMmt8AftertouchEvent>(10, 3, 77))));
}

TEST(ImportConvertTest, SysexIsCutIntoPiecesOfThreeWithFillers)
{
    MidiImportOptions sysex;
    sysex.importSysex = 1;
    const auto events = [] {
        return EventsOf(Sysex(5, 0xF0, {0x41, 0x10, 0x42, 0x12, 0xF7, 0x99}),
                        Sysex(0, 0xF0, {0xF7}), Sysex(0, 0xF0, {}), Sysex(1, 0xF7, {0x43, 0x8F}));
    };
    EXPECT_TRUE(SameTrack(Convert(events(), sysex),
                          TrackOf(0, Make<CMmt8SysexEvent>(5, 0x41, 0x10, 0x42),
                                  Untimed(Make<CMmt8SysexEvent>(5, 0x12, 0x80, 0x80)),
                                  Make<CMmt8SysexEvent>(6, 0x43, 0x0F, 0x80))));
    EXPECT_TRUE(Convert(events()).events.empty());
}

TEST(ImportConvertTest, ChannelPrefixSetsTheTrackChannelUnlessIgnored)
{
    const auto events = [] {
        return EventsOf(Meta(0, 0x20, {2}), Meta(0, 0x20, {15}), Meta(0, 0x20, {16}),
                        Meta(0, 0x20, {}));
    };
    EXPECT_EQ(Convert(events()).channel, 16);
    MidiImportOptions ignore;
    ignore.ignoreChannel = 1;
    EXPECT_EQ(Convert(events(), ignore).channel, 0);
}

TEST(ImportConvertTest, EventsAfterTheLastClockAreDropped)
{
    // At division 1 a tick is 96 clocks: tick 682 is clock 65472, tick 683 is past 65535.
    const CMmt8Track track = Convert(
        EventsOf(Channel(682, 0x90, 60, 100), Channel(1, 0x80, 60, 0), Channel(0, 0xC0, 1)), {}, 1);
    EXPECT_TRUE(SameTrack(track, TrackOf(0, Note(65472, 60, 1))));
}

TEST(RunImportTest, OneDestinationTakesTheWholeFileAndKeepsUnmaskedTracks)
{
    CMmt8Memory memory;
    AppendEvent(memory.Part(4).tracks[0], Note(0, 50, 10));
    AppendEvent(memory.Part(4).tracks[1], Note(0, 51, 10));
    CMidiImport request =
        Request(FileOf(1, 480,
                       EventsOf(Meta(0, 6, Text("Verse")), Meta(0, 0x20, {4}),
                                Channel(240, 0x90, 60, 100), Channel(960, 0x80, 60, 0))),
                {4, 7}, 0x02);
    request.options.markersAsParts = 0;
    ASSERT_TRUE(RunImport(request, memory));

    const CMmt8Part& part = memory.Part(4);
    EXPECT_EQ(part.name, "demo take.mid");
    EXPECT_EQ(part.beats, 1u); // clock 48
    EXPECT_TRUE(SameTrack(part.tracks[0], TrackOf(0, Note(0, 50, 10))));
    EXPECT_TRUE(SameTrack(part.tracks[1], TrackOf(5, Note(48, 60, 192))));
    EXPECT_TRUE(memory.Part(7).IsEmpty());
    EXPECT_EQ(memory.modified, 0);
}

TEST(RunImportTest, MarkersCutTheFileIntoOnePartEach)
{
    // Markers at 0, 0 and 384 clocks: the first window is empty, so the
    // first part is named after the second marker.
    CMmt8Memory memory;
    CMidiImport request =
        Request(FileOf(1, 96,
                       EventsOf(Meta(0, CMidiMetaEvent::kTypeTrackName, Text("Song")),
                                Meta(0, 6, Text("Intro")), Meta(0, 6, Text("  Verse \t")),
                                Meta(384, 6, Text("   ")), Meta(0, 6, {})),
                       EventsOf(Channel(0, 0x90, 60, 100), Channel(96, 0x80, 60, 0),
                                Channel(300, 0xC0, 2), Channel(100, 0xC0, 3))),
                {10, 11, 12});
    ASSERT_TRUE(RunImport(request, memory));
    EXPECT_EQ(memory.Part(10).name, "Verse");
    EXPECT_TRUE(SameTrack(memory.Part(10).tracks[0], TrackOf(0, Note(0, 60, 96))));
    EXPECT_EQ(memory.Part(11).name, "Marker 3");
    EXPECT_TRUE(SameTrack(memory.Part(11).tracks[0], TrackOf(0, Make<CMmt8ProgramEvent>(12, 0, 2),
                                                             Make<CMmt8ProgramEvent>(112, 0, 3))));
    EXPECT_EQ(memory.Part(11).beats, 2u);
    EXPECT_TRUE(memory.Part(12).IsEmpty()); // the markers ran out
    EXPECT_EQ(request.staging.name, "Song");
}

TEST(RunImportTest, StartAtZeroMovesEventsAndMarkersAlike)
{
    CMmt8Memory memory;
    CMidiImport request = Request(
        FileOf(
            1, 96, EventsOf(Meta(96, 6, Text("A")), Meta(0, 6, Text("B")), Meta(384, 6, Text("C"))),
            EventsOf(Channel(96, 0xC0, 1), Channel(384, 0xC0, 2)), EventsOf(Channel(200, 0xC1, 5))),
        {0, 1});
    request.options.startAtZero = 1;
    ASSERT_TRUE(RunImport(request, memory));
    EXPECT_EQ(request.startShift, -96);
    EXPECT_EQ(memory.Part(0).name, "B");
    EXPECT_TRUE(SameTrack(memory.Part(0).tracks[0], TrackOf(0, Make<CMmt8ProgramEvent>(0, 0, 1))));
    EXPECT_TRUE(
        SameTrack(memory.Part(0).tracks[1], TrackOf(0, Make<CMmt8ProgramEvent>(104, 1, 5))));
    EXPECT_EQ(memory.Part(1).name, "C");
    EXPECT_TRUE(SameTrack(memory.Part(1).tracks[0], TrackOf(0, Make<CMmt8ProgramEvent>(0, 0, 2))));
}

TEST(RunImportTest, TheTargetSongGetsTheNameAndTheFilesTempo)
{
    const auto run = [](std::uint32_t microsecondsPerBeat) {
        std::vector<Events> tracks;
        tracks.push_back(EventsOf(
            Meta(0, CMidiMetaEvent::kTypeTrackName, Text("A name longer than fourteen")),
            Meta(0, CMidiMetaEvent::kTypeTempo,
                 {std::uint8_t(microsecondsPerBeat >> 16), std::uint8_t(microsecondsPerBeat >> 8),
                  std::uint8_t(microsecondsPerBeat)})));
        CMmt8Memory memory;
        memory.AppendStep(3, 8, 0xFF);
        CMidiImport request = Request(MakeFile(1, 96, std::move(tracks)), {8});
        request.targetSong = 3;
        EXPECT_TRUE(RunImport(request, memory));
        EXPECT_EQ(memory.Song(3).name, "A name longer");
        EXPECT_EQ(memory.Song(3).steps.size(), 1u);
        return memory.Song(3).tempo;
    };
    EXPECT_EQ(run(60000000 / 90), 90);
    EXPECT_EQ(run(200000), 120); // 300 BPM
}

TEST(RunImportTest, NoPartGetsMoreThan682Beats)
{
    // Clock 65500 lies in beat 683: the controller there is cut off and the
    // note is shortened to end with beat 682 (clock 65472).
    CMmt8Memory memory;
    CMidiImport request =
        Request(FileOf(1, 96,
                       EventsOf(Channel(65400, 0x90, 60, 100), Channel(100, 0xB0, 7, 1),
                                Channel(30, 0x80, 60, 0))),
                {3});
    ASSERT_TRUE(RunImport(request, memory));
    EXPECT_EQ(memory.Part(3).beats, kMaxBeats);
    EXPECT_TRUE(SameTrack(memory.Part(3).tracks[0], TrackOf(0, Note(65400, 60, 72))));
}

// A file of 9,500 notes at their own clocks takes 66,500 bytes, more than
// the device holds: the preview says so, and the document is untouched.
TEST(RunImportTest, PreviewMeasuresTheResultBeforeTheDocumentChanges)
{
    Events notes;
    for (int i = 0; i < 9500; ++i)
        notes.push_back(Channel(i == 0 ? 0 : 6, 0x90, 60, 100));
    CMmt8Memory memory;
    memory.AppendStep(5, 0, 0xFF);
    const std::uint32_t before = memory.GetMemorySize();
    CMidiImport request = Request(FileOf(1, 96, std::move(notes)), {0});
    CImportPreview preview;
    ASSERT_TRUE(PreviewImport(request, memory, preview));
    EXPECT_EQ(memory.GetMemorySize(), before);
    EXPECT_TRUE(memory.Part(0).IsEmpty());
    EXPECT_EQ(preview.result.Part(0).tracks[0].events.size(), 9500u);
    EXPECT_EQ(preview.result.Song(5).steps.size(), 1u);
    const std::uint32_t size = before + 42 + 8 * 7 + 9500 * 7;
    EXPECT_EQ(preview.memorySize, size);
    EXPECT_EQ(preview.warning,
              "After this import the memory would use " + std::to_string(size) + " bytes, " +
                  std::to_string(size - kMmt8MemoryCapacity) +
                  " more than the Alesis MMT8 can hold (64256); it could not be sent to the "
                  "device.\n");

    CMidiImport small = Request(FileOf(1, 96, EventsOf(Channel(0, 0x90, 60, 100))), {0});
    ASSERT_TRUE(PreviewImport(small, memory, preview));
    EXPECT_EQ(preview.warning, "");
    EXPECT_EQ(preview.memorySize, before + 42 + 8 * 7 + 7);
    CMidiImport nowhere = Request(FileOf(1, 96, EventsOf(Channel(0, 0xC0, 1))), {});
    EXPECT_FALSE(PreviewImport(nowhere, memory, preview));
}

TEST(RunImportTest, WithoutADestinationNothingChanges)
{
    CMmt8Memory memory;
    CMidiImport request = Request(FileOf(1, 96, EventsOf(Channel(0, 0xC0, 1))), {});
    request.targetSong = 0;
    EXPECT_FALSE(RunImport(request, memory));
    EXPECT_TRUE(memory.Song(0).IsEmpty());
}

TEST(RunImportTest, AnImportedPartSurvivesSavingAndLoading)
{
    CMmt8Memory memory;
    CMidiImport request =
        Request(FileOf(1, 96,
                       EventsOf(Channel(0, 0x90, 60, 100), Channel(0, 0xB0, 123, 0),
                                Channel(0, 0xB0, 127, 0), Channel(10, 0xB0, 126, 0),
                                Channel(0, 0xC0, 9), Channel(0, 0xF0 - 0x10, 0, 0x40),
                                Sysex(0, 0xF0, {0x43, 0x10, 0xF7}), Channel(20, 0x80, 60, 0))),
                {2});
    request.options.importSysex = 1;
    ASSERT_TRUE(RunImport(request, memory));
    std::vector<std::uint8_t> dump;
    std::string error;
    ASSERT_TRUE(BuildDump(memory, dump, error)) << error;
    CMmt8Memory loaded;
    ASSERT_TRUE(LoadSysexData(loaded, dump, error)) << error;
    EXPECT_EQ(loaded.Part(2).tracks[0].events.size(), 4u);
    EXPECT_TRUE(SameTrack(loaded.Part(2).tracks[0], memory.Part(2).tracks[0]));
}

} // namespace
} // namespace tarvix::testing
