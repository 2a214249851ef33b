#include "model/Mmt8Memory.h"
#include "ui/views/PianoRollModel.h"
#include "ui/views/SongViewModel.h"
#include "ui/views/TimeLine.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace tarvix::testing {
namespace {

void AddNote(CMmt8Part& part, int track, std::uint16_t time, std::uint8_t pitch,
             std::uint16_t duration)
{
    auto note = std::make_unique<CMmt8NoteEvent>();
    note->time = time;
    note->timed = 1;
    note->data1 = pitch;
    note->data2 = 100;
    note->duration = duration;
    part.tracks[static_cast<std::size_t>(track)].events.push_back(std::move(note));
}

std::vector<int> PitchesIn(const CPianoRollModel& model, std::uint32_t from, std::uint32_t to,
                           int low = 0, int high = 127)
{
    std::vector<int> pitches;
    model.ForEachNoteIn(from, to, low, high, [&pitches](const CPianoRollModel::Note& note) {
        pitches.push_back(note.pitch);
    });
    return pitches;
}

// The look-up a frame makes must find exactly the notes sounding in its
// stretch, however long the notes before it are.
TEST(PianoRollModelTest, AStretchOfTimeFindsExactlyTheNotesSoundingInIt)
{
    CMmt8Part part;
    part.beats = 4;
    AddNote(part, 0, 0, 40, 1500); // holds past everything below
    AddNote(part, 0, 96, 41, 10);
    AddNote(part, 3, 50, 60, 0); // no duration: still a note at 50
    AddNote(part, 3, 200, 62, 96);
    AddNote(part, 5, 100, 70, 200); // reaches past the part's 4 beats
    CPianoRollModel model;
    model.Rebuild(part);

    // Merged across tracks in time order.
    std::vector<std::uint32_t> starts;
    for (const auto& note : model.Notes())
        starts.push_back(note.start);
    EXPECT_EQ(starts, (std::vector<std::uint32_t>{0, 50, 96, 100, 200}));
    EXPECT_EQ(PitchesIn(model, 250, 251), (std::vector<int>{40, 70, 62}));
    EXPECT_EQ(PitchesIn(model, 300, 301), std::vector<int>{40}); // the others ended just before
    EXPECT_EQ(PitchesIn(model, 1400, 2000), std::vector<int>{40});
    EXPECT_EQ(PitchesIn(model, 50, 51), (std::vector<int>{40, 60}));
    EXPECT_EQ(PitchesIn(model, 51, 96), std::vector<int>{40});
    EXPECT_EQ(PitchesIn(model, 0, 400, 60, 65), (std::vector<int>{60, 62}));
    // The longest note makes the time line 4 bars, whole bars always.
    EXPECT_EQ(model.LengthClocks(), 4 * kClocksPerBar);

    model.SetTrackVisible(0, false);
    EXPECT_EQ(PitchesIn(model, 0, 2000), (std::vector<int>{60, 70, 62}));
    EXPECT_EQ(model.VisibleNoteCount(), 3);
    EXPECT_EQ(model.NoteAt(300, 40), nullptr);
    model.SetTrackVisible(0, true);
    ASSERT_NE(model.NoteAt(300, 40), nullptr);
    EXPECT_EQ(model.NoteAt(300, 40)->track, 0);
    EXPECT_EQ(model.LowestPitch(), 40);
    EXPECT_EQ(model.HighestPitch(), 70);
}

TEST(PianoRollModelTest, OtherEventsGoToTheLaneAsTallAsTheirValue)
{
    CMmt8Part part;
    part.beats = 1;
    auto bend = std::make_unique<CMmt8PitchBendEvent>();
    bend->time = 10;
    bend->value = 0x7F00;
    part.tracks[2].events.push_back(std::move(bend));
    auto program = std::make_unique<CMmt8ProgramEvent>();
    program->data1 = 33;
    part.tracks[1].events.push_back(std::move(program));
    CPianoRollModel model;
    model.Rebuild(part);
    ASSERT_EQ(model.LaneEvents().size(), 2u);
    EXPECT_EQ(model.LaneEvents()[0].height, 33);
    EXPECT_EQ(model.LaneEvents()[1].height, 0x7F);
    EXPECT_EQ(model.LaneEventNear(12, 3)->time, 10u);
    EXPECT_EQ(model.LaneEventNear(20, 3), nullptr);
    // A part of one beat still shows one whole bar.
    EXPECT_EQ(model.LengthClocks(), kClocksPerBar);
    EXPECT_EQ(DescribePosition(kClocksPerBar + 2 * kClocksPerBeat + 48),
              "bar 2 beat 3 + 48 clocks");
}

TEST(SongViewModelTest, StepsFollowEachOtherByTheirPartsBeats)
{
    CMmt8Memory memory;
    memory.SetPartBeats(1, 4);
    memory.SetPartName(1, "Intro");
    memory.SetPartBeats(2, 8);
    memory.SetSongTempo(5, 120);
    memory.AppendStep(5, 1, 0xFF);
    memory.AppendStep(5, 9, 0x01); // an empty part takes no time
    memory.AppendStep(5, 2, 0x00);
    CSongViewModel model;
    model.Rebuild(memory, 5);
    ASSERT_EQ(model.BlockCount(), 3);
    EXPECT_EQ(model.Blocks()[0].label, "01  Intro");
    EXPECT_EQ(model.Blocks()[1].startBeat, 4u);
    EXPECT_EQ(model.Blocks()[2].startBeat, 4u);
    EXPECT_EQ(model.TotalBeats(), 12u);
    EXPECT_DOUBLE_EQ(model.Seconds(), 6.0);
    EXPECT_EQ(model.FirstBlockFrom(0), 0);
    EXPECT_EQ(model.FirstBlockFrom(5), 2);
    EXPECT_EQ(model.FirstBlockFrom(13), 3);
    EXPECT_EQ(DescribeSongBlock(model.Blocks()[2]),
              "Step 3: part 02, 8 beats, tracks none, from bar 2 beat 1");
}

} // namespace
} // namespace tarvix::testing
