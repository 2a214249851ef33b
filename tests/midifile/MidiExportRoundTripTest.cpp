// Exported parts come back through the import event for event, and an
// outside reader (mido) sees the files as we meant them.
#include "ExportTestSupport.h"
#ifndef _WIN32
#include "MidoPeer.h"
#endif

#include "midifile/ImportTrackList.h"
#include "model/EventBuilders.h"
#include "model/Mmt8Memory.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace tarvix::testing {
namespace {

using test::Make;
using test::Note;
using test::TrackOf;
using Kind = MidiSelectionKind;

int Pick(std::mt19937& random, int lowest, int highest)
{
    return std::uniform_int_distribution<int>(lowest, highest)(random);
}

std::uint8_t Byte(std::mt19937& random, int lowest, int highest)
{
    return static_cast<std::uint8_t>(Pick(random, lowest, highest));
}

// A SysEx message of 1-8 bytes cut into pieces as the device keeps it.
void AppendSysex(CMmt8Track& track, std::mt19937& random, std::uint16_t time, bool timed)
{
    const int length = Pick(random, 1, 8);
    for (int start = 0; start < length; start += 3) {
        std::uint8_t bytes[3] = {kSysexFiller, kSysexFiller, kSysexFiller};
        for (int i = 0; i < 3 && start + i < length; ++i)
            bytes[i] = Byte(random, 0, 127);
        auto piece = Make<CMmt8SysexEvent>(time, bytes[0], bytes[1], bytes[2]);
        piece->timed = timed && start == 0 ? 1 : 0;
        track.events.push_back(std::move(piece));
    }
}

// Content the device records: 7-bit values, notes of a few keys played over
// each other, runs of events at one time.
void FillPlayableTrack(CMmt8Track& track, std::mt19937& random, std::uint32_t clocks)
{
    track.channel = Byte(random, 0, 16);
    const int count = Pick(random, 0, 2) == 0 ? 0 : Pick(random, 1, 50);
    std::uint32_t time = 0;
    for (int i = 0; i < count; ++i) {
        if (!track.events.empty() && Pick(random, 0, 3) != 0)
            time = std::min(clocks - 1, time + static_cast<std::uint32_t>(Pick(random, 1, 150)));
        const auto at = static_cast<std::uint16_t>(time);
        const bool timed = track.events.empty() || track.events.back()->time != at;
        const std::uint8_t channel = Byte(random, 0, 1);
        std::unique_ptr<CMmt8Event> event;
        switch (Pick(random, 0, 6)) {
        case 0:
        case 1:
            event = Note(at, Byte(random, 60, 62), static_cast<std::uint16_t>(Pick(random, 1, 300)),
                         channel, Byte(random, 1, 127));
            break;
        case 2:
            event =
                Make<CMmt8ControlEvent>(at, channel, Byte(random, 0, 121), Byte(random, 0, 127));
            break;
        case 3: event = Make<CMmt8ProgramEvent>(at, channel, Byte(random, 0, 127)); break;
        case 4: event = Make<CMmt8AftertouchEvent>(at, channel, Byte(random, 0, 127)); break;
        case 5:
            event = test::Bend(
                at, static_cast<std::uint16_t>(Byte(random, 0, 127) << 8 | Byte(random, 0, 127)),
                channel);
            break;
        default: AppendSysex(track, random, at, timed); continue;
        }
        event->timed = timed ? 1 : 0;
        track.events.push_back(std::move(event));
    }
}

void FillPlayablePart(CMmt8Memory& memory, int part, std::mt19937& random, std::uint32_t beats)
{
    CMmt8Part& target = memory.Part(part);
    target.beats = beats;
    memory.SetPartName(part, std::string(Pick(random, 0, 1) == 0 ? "" : " ") + "P" +
                                 std::to_string(Pick(random, 0, 9999)));
    for (auto& track : target.tracks)
        FillPlayableTrack(track, random, beats * kClocksPerBeat);
}

std::uint16_t& Duration(CMmt8Event& event)
{
    return static_cast<CMmt8NoteEvent&>(event).duration;
}

// The lengths a file track's notes come back with: each note ends where the
// next note of its key starts, and a note without length gets the shortest
// length, 1 for the import (0 for a sequencer). The events
// are those of one file track, in file order, at their ticks in the file;
// notes of velocity 0 are not written and take no part.
void ApplyNoteRule(const std::vector<std::pair<std::uint64_t, CMmt8Event*>>& events,
                   std::uint16_t shortest = 1)
{
    std::map<int, std::uint64_t> nextStart;
    for (auto it = events.rbegin(); it != events.rend(); ++it) {
        CMmt8Event& event = *it->second;
        if (event.GetTypeCode() != kNoteEventType || event.data2 == 0)
            continue;
        const int key = event.channel * 128 + event.data1;
        if (const auto next = nextStart.find(key); next != nextStart.end())
            Duration(event) = static_cast<std::uint16_t>(
                std::min<std::uint64_t>(Duration(event), next->second - it->first));
        Duration(event) = std::max(Duration(event), shortest);
        nextStart[key] = it->first;
    }
}

// The device plays the channel events of a track whose channel is set on
// that channel, and so does the file.
void ForceChannels(CMmt8Part& part)
{
    for (auto& track : part.tracks) {
        if (track.channel < 1 || track.channel > kMaxTrackChannel)
            continue;
        for (auto& event : track.events)
            if (event->GetTypeCode() != kSysexEventType)
                event->channel = static_cast<std::uint8_t>(track.channel - 1);
    }
}

// What the import gives back of parts exported one after another: the
// forced channels on the events, the note
// rule over each whole file track, a length measured to the last event, the
// marker's name when there are several parts, and the last channel given to
// each track.
CMmt8Memory ExpectedBack(const CMmt8Memory& original, const std::vector<int>& parts)
{
    CMmt8Memory expected;
    for (const int part : parts) {
        expected.Part(part) = original.Part(part);
        ForceChannels(expected.Part(part));
    }
    for (int track = 0; track < kTracksPerPart; ++track) {
        std::vector<std::pair<std::uint64_t, CMmt8Event*>> events;
        std::uint64_t offset = 0;
        std::uint8_t channel = 0;
        for (const int part : parts) {
            CMmt8Track& source = expected.Part(part).tracks[static_cast<std::size_t>(track)];
            for (const auto& event : source.events)
                events.emplace_back(offset + event->time, event.get());
            offset += std::uint64_t{original.Part(part).beats} * kClocksPerBeat;
            channel = source.channel != 0 ? source.channel : channel;
        }
        ApplyNoteRule(events);
        for (const int part : parts)
            expected.Part(part).tracks[static_cast<std::size_t>(track)].channel = channel;
    }
    for (const int part : parts) {
        expected.RecomputePartBeats(part);
        if (parts.size() > 1)
            expected.SetPartName(part, std::string(expected.Part(part).name.substr(
                                           expected.Part(part).name.find_first_not_of(' '))));
    }
    return expected;
}

::testing::AssertionResult SamePart(const CMmt8Part& expected, const CMmt8Part& actual)
{
    if (expected.beats != actual.beats || expected.name != actual.name)
        return ::testing::AssertionFailure()
               << "beats " << expected.beats << "/" << actual.beats << ", name '" << expected.name
               << "'/'" << actual.name << "'";
    for (std::size_t track = 0; track < expected.tracks.size(); ++track)
        if (auto same = test::SameTrack(expected.tracks[track], actual.tracks[track]); !same)
            return same << " (track " << track + 1 << ")";
    return ::testing::AssertionSuccess();
}

TEST(MidiExportRoundTripTest, APartComesBackEventForEvent)
{
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        CMmt8Memory original;
        const int part = Pick(random, 0, kPartCount - 1);
        FillPlayablePart(original, part, random, static_cast<std::uint32_t>(Pick(random, 1, 40)));

        CMmt8Memory back;
        ImportBack(back, Select(Kind::Part, part),
                   ExportedBytes(original, Select(Kind::Part, part)));
        const CMmt8Memory expected = ExpectedBack(original, {part});
        EXPECT_TRUE(SamePart(expected.Part(part), back.Part(part)));
    }
}

TEST(MidiExportRoundTripTest, SelectedTracksComeBackIntoTheirRows)
{
    for (unsigned seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        CMmt8Memory original;
        FillPlayablePart(original, 7, random, 16);
        std::vector<int> tracks;
        for (int track = 0; track < kTracksPerPart; ++track)
            if (Pick(random, 0, 2) == 0)
                tracks.push_back(track);
        if (tracks.empty())
            tracks.push_back(Pick(random, 0, 7));

        // The other tracks of the target hold something else, and keep it.
        CMmt8Memory back;
        FillPlayablePart(back, 7, random, 16);
        CMmt8Memory expected = ExpectedBack(original, {7});
        for (int track = 0; track < kTracksPerPart; ++track)
            if (std::find(tracks.begin(), tracks.end(), track) == tracks.end())
                expected.Part(7).tracks[std::size_t(track)] =
                    back.Part(7).tracks[std::size_t(track)];
        expected.RecomputePartBeats(7);

        ImportBack(back, Select(Kind::PartTracks, 7, tracks),
                   ExportedBytes(original, Select(Kind::PartTracks, 7, tracks)));
        EXPECT_TRUE(SamePart(expected.Part(7), back.Part(7)));
    }
}

TEST(MidiExportRoundTripTest, SeveralPartsComeBackThroughTheirMarkers)
{
    for (unsigned seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        CMmt8Memory original;
        std::vector<int> parts;
        for (int i = 0; i < 4; ++i) {
            const int part = Pick(random, 0, kPartCount - 1);
            if (std::find(parts.begin(), parts.end(), part) != parts.end())
                continue;
            FillPlayablePart(original, part, random,
                             static_cast<std::uint32_t>(Pick(random, 1, 150)));
            parts.push_back(part);
        }

        CMmt8Memory back;
        ImportBack(back, Select(Kind::Parts, 0, parts),
                   ExportedBytes(original, Select(Kind::Parts, 0, parts)));
        const CMmt8Memory expected = ExpectedBack(original, parts);
        for (const int part : parts)
            EXPECT_TRUE(SamePart(expected.Part(part), back.Part(part))) << "part " << part;
    }
}

TEST(MidiExportRoundTripTest, NamesAndLengthsComeBackAsTheImportMeasuresThem)
{
    CMmt8Memory original;
    original.Part(3).beats = 8; // unnamed, last event in beat 2
    original.Part(3).tracks[2] = TrackOf(0, Make<CMmt8ProgramEvent>(100, 0, 1));
    original.Part(4).beats = 4; // no events at all
    original.Part(4).name = "SILENCE";

    CMmt8Memory back;
    ImportBack(back, Select(Kind::Part, 3), ExportedBytes(original, Select(Kind::Part, 3)));
    EXPECT_EQ(back.Part(3).beats, 2u);
    EXPECT_EQ(back.Part(3).name, "export.mid");
    EXPECT_TRUE(test::SameTrack(original.Part(3).tracks[2], back.Part(3).tracks[2]));

    back.Part(4).beats = 1;
    ImportBack(back, Select(Kind::Part, 4), ExportedBytes(original, Select(Kind::Part, 4)));
    EXPECT_EQ(back.Part(4).beats, 0u);
    EXPECT_EQ(back.Part(4).name, "SILENCE");
}

// Device tracks without events send nothing, yet still hold their places:
// the import ticks every track an export made for a device track, and only
// those.
TEST(MidiExportRoundTripTest, EmptyDeviceTracksKeepTheirPlaces)
{
    CMmt8Memory original;
    original.Part(6).beats = 1;
    original.Part(6).name = "PADS";
    original.Part(6).tracks[5] = TrackOf(0, Note(10, 60, 20));
    const Bytes bytes = ExportedBytes(original, Select(Kind::Part, 6));
    EXPECT_EQ(GetInitialTicks(ReadMidi(bytes)),
              std::vector<bool>({false, true, true, true, true, true, true, true, true}));

    // A track marked by some other program stays unticked.
    CMidiFile other = ReadMidi(bytes);
    auto& mark = static_cast<CMidiMetaEvent&>(*other.tracks[1]->events[1]);
    const std::uint8_t otherData[] = {0x7D, 'O', 't', 'h', 'e', 'r'};
    mark.SetData(otherData);
    EXPECT_FALSE(GetInitialTicks(other)[1]);

    CMmt8Memory back;
    for (int part : {6, 9}) {
        back.Part(part).beats = 1;
        for (auto& track : back.Part(part).tracks)
            track = TrackOf(0, Make<CMmt8ProgramEvent>(0, 0, 1));
    }
    ImportBack(back, Select(Kind::Part, 6), bytes);
    EXPECT_TRUE(SamePart(original.Part(6), back.Part(6)));
    // The selected tracks of another part: tracks 2 and 6 of part 6 go to
    // tracks 3 and 4, whatever they held.
    ImportBack(back, Select(Kind::PartTracks, 9, {2, 3}),
               ExportedBytes(original, Select(Kind::PartTracks, 6, {1, 5})));
    EXPECT_EQ(back.Part(9).tracks[2].events.size(), 0u);
    EXPECT_TRUE(test::SameTrack(original.Part(6).tracks[5], back.Part(9).tracks[3]));
}

#ifndef _WIN32
// mido runs on the build machine's Python, which the Windows build's tests
// cannot start.

// mido's reading of a file we wrote, event for event and as a sequencer's
// notes (each note-off ending the earliest open note of its key).
struct MidoView {
    std::string listing;
    std::string notes;
};

MidoView ReadWithMido(const Bytes& bytes)
{
    const TempDir folder;
    const std::string path = folder.File("export.mid");
    WriteAllBytes(path, bytes);
    const PeerRun listing = RunMidoPeer("list", path);
    const PeerRun notes = RunMidoPeer("notes", path);
    EXPECT_EQ(listing.status, 0) << listing.output;
    EXPECT_EQ(notes.status, 0) << notes.output;
    return {listing.output, notes.output};
}

// The notes a sequencer should show for an exported part.
std::string SequencerNotes(CMmt8Part part)
{
    ForceChannels(part);
    std::string text = "track\n";
    for (const auto& track : part.tracks) {
        text += "track\n";
        std::vector<std::pair<std::uint64_t, CMmt8Event*>> events;
        CMmt8Track copy = track;
        for (const auto& event : copy.events)
            events.emplace_back(event->time, event.get());
        ApplyNoteRule(events, 0);
        for (const auto& event : copy.events) {
            if (event->GetTypeCode() != kNoteEventType || event->data2 == 0)
                continue;
            text += std::to_string(event->time) + " " + std::to_string(Duration(*event)) + " " +
                    std::to_string(event->channel) + " " + std::to_string(event->data1) + " " +
                    std::to_string(event->data2) + "\n";
        }
    }
    return text;
}

TEST(MidiExportRoundTripTest, MidoReadsEveryExportAsMeant)
{
    std::mt19937 random(7);
    CMmt8Memory memory;
    for (const int part : {1, 2, 3})
        FillPlayablePart(memory, part, random, 12);
    // Past every other event: a note, one of velocity 0, one without length.
    auto& events = memory.Part(1).tracks[0].events;
    events.push_back(Note(1151, 60, 30));
    events.push_back(Note(1151, 60, 30, 0, 0));
    events.push_back(Note(1151, 61, 0));
    memory.Song(0).tempo = 97;
    memory.Song(0).steps = {{1, 0xFF}, {2, 0x0F}, {3, 0xF0}, {1, 0xFF}};
    for (const MidiSelection& selection : {Select(Kind::Part, 1), Select(Kind::Parts, 0, {3, 2}),
                                           Select(Kind::Song, 0), Select(Kind::AllParts)}) {
        const Bytes bytes = ExportedBytes(memory, selection);
        const MidoView mido = ReadWithMido(bytes);
        EXPECT_EQ(mido.listing, ListEvents(ReadMidi(bytes)));
        if (selection.kind == Kind::Part) {
            EXPECT_EQ(mido.notes, SequencerNotes(memory.Part(1)));
        }
    }
}

#endif

} // namespace
} // namespace tarvix::testing
