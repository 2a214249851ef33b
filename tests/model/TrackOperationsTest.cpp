#include "EventBuilders.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarvix::test {
namespace {

std::vector<std::uint16_t> Times(const CMmt8Track& track)
{
    std::vector<std::uint16_t> times;
    for (const auto& event : track.events)
        times.push_back(event->time);
    return times;
}

std::vector<std::uint32_t> TimedFlags(const CMmt8Track& track)
{
    std::vector<std::uint32_t> flags;
    for (const auto& event : track.events)
        flags.push_back(event->timed);
    return flags;
}

using Times16 = std::vector<std::uint16_t>;
using Flags = std::vector<std::uint32_t>;

const CMmt8NoteEvent& NoteAt(const CMmt8Track& track, std::size_t index)
{
    return dynamic_cast<const CMmt8NoteEvent&>(*track.events.at(index));
}

TEST(TruncateTrackTest, CutsEventsAtTheEndAndShortensNotesReachingPastIt)
{
    CMmt8Track track = TrackOf(0, Note(0, 60, 384), Note(300, 62, 200), Note(300, 64, 84),
                               Make<CMmt8ControlEvent>(383, 0, 7, 1),
                               Make<CMmt8ControlEvent>(384, 0, 7, 2), Note(500, 65, 10));
    EXPECT_TRUE(TruncateTrack(track, 384));
    EXPECT_EQ(Times(track), (Times16{0, 300, 300, 383}));
    EXPECT_EQ(NoteAt(track, 0).duration, 384); // ends exactly at the cut
    EXPECT_EQ(NoteAt(track, 1).duration, 84);
    EXPECT_EQ(NoteAt(track, 2).duration, 84);
}

TEST(TruncateTrackTest, EmptyTrackReportsFalseAndCutAtZeroEmptiesTheTrack)
{
    CMmt8Track empty;
    EXPECT_FALSE(TruncateTrack(empty, 96));

    CMmt8Track track = TrackOf(3, Note(0, 60, 10), Untimed(Make<CMmt8ProgramEvent>(0, 0, 1)));
    EXPECT_TRUE(TruncateTrack(track, 0));
    EXPECT_TRUE(track.events.empty());
    EXPECT_EQ(track.channel, 3);
}

TEST(FindOpenNoteTest, FindsTheLatestNoteOfThatChannelAndNumber)
{
    CMmt8Track track = TrackOf(0, Note(0, 60, 0, 0), Note(10, 60, 0, 1), Note(20, 60, 0, 0),
                               Note(25, 61, 0, 0), Make<CMmt8ControlEvent>(30, 0, 60, 1));
    CMmt8NoteEvent* found = FindOpenNote(track, 0, 60);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->time, 20);
    // The caller sets the duration on the track's own event.
    found->duration = 7;
    EXPECT_EQ(NoteAt(track, 2).duration, 7);

    ASSERT_NE(FindOpenNote(track, 1, 60), nullptr);
    EXPECT_EQ(FindOpenNote(track, 1, 60)->time, 10);
    EXPECT_EQ(FindOpenNote(track, 2, 60), nullptr);
    EXPECT_EQ(FindOpenNote(track, 0, 62), nullptr);
    CMmt8Track empty;
    EXPECT_EQ(FindOpenNote(empty, 0, 60), nullptr);
}

class CopyEventsInWindowTest : public ::testing::Test {
protected:
    // Starts untimed, as a track may after a decode.
    CMmt8Track m_source = TrackOf(5, Untimed(Note(0, 60, 48)), Make<CMmt8ControlEvent>(95, 0, 7, 1),
                                  Make<CMmt8ProgramEvent>(96, 0, 3), Untimed(Bend(96, 0x5000)),
                                  Make<CMmt8SysexEvent>(191, 1, 2, 3), Note(192, 62, 10));
};

TEST_F(CopyEventsInWindowTest, CopiesTheHalfOpenWindowMovedToStartAtZero)
{
    CMmt8Track target = TrackOf(9, Note(0, 1, 1), Note(1000, 1, 1));
    EXPECT_TRUE(CopyEventsInWindow(target, m_source, 96, 192));
    EXPECT_EQ(target.channel, 5);
    EXPECT_EQ(Times(target), (Times16{0, 0, 95}));
    EXPECT_EQ(TimedFlags(target), (Flags{1, 0, 1}));
    EXPECT_EQ(target.events[1]->GetTypeCode(), kPitchBendEventType);
    // The source keeps its own times.
    EXPECT_EQ(Times(m_source), (Times16{0, 95, 96, 96, 191, 192}));

    // The untimed first event of the source becomes a timed first copy.
    EXPECT_TRUE(CopyEventsInWindow(target, m_source, 0, 96));
    EXPECT_EQ(TimedFlags(target), (Flags{1, 1}));
    EXPECT_EQ(m_source.events[0]->timed, 0u);
}

TEST_F(CopyEventsInWindowTest, EmptyWindowStillClearsTheTargetAndTakesTheChannel)
{
    CMmt8Track target = TrackOf(9, Note(0, 1, 1));
    EXPECT_FALSE(CopyEventsInWindow(target, m_source, 193, 1000));
    EXPECT_TRUE(target.events.empty());
    EXPECT_EQ(target.channel, 5);
    EXPECT_FALSE(CopyEventsInWindow(target, m_source, 50, 50));
}

TEST_F(CopyEventsInWindowTest, SourceMayBeTheTarget)
{
    EXPECT_TRUE(CopyEventsInWindow(m_source, m_source, 96, 0x10000));
    EXPECT_EQ(Times(m_source), (Times16{0, 0, 95, 96}));
    EXPECT_EQ(m_source.channel, 5);
}

TEST(ShiftTrackTimesTest, ShiftsEveryEventInRangeBothWays)
{
    CMmt8Track track = TrackOf(0, Note(100, 1, 1), Untimed(Note(100, 2, 1)), Note(65435, 3, 1));
    EXPECT_TRUE(ShiftTrackTimes(track, 100));
    EXPECT_EQ(Times(track), (Times16{200, 200, 65535}));
    EXPECT_TRUE(ShiftTrackTimes(track, -200));
    EXPECT_EQ(Times(track), (Times16{0, 0, 65335}));
    EXPECT_EQ(TimedFlags(track), (Flags{1, 0, 1}));
    EXPECT_TRUE(ShiftTrackTimes(track, 0));
    EXPECT_EQ(Times(track), (Times16{0, 0, 65335}));
    CMmt8Track empty;
    EXPECT_TRUE(ShiftTrackTimes(empty, -5));
}

TEST(ShiftTrackTimesTest, StopsAtTheFirstEventLeavingRangeAndMarksItTimed)
{
    CMmt8Track track =
        TrackOf(0, Note(0, 1, 1), Untimed(Note(65500, 2, 1)), Untimed(Note(65535, 3, 1)));
    EXPECT_FALSE(ShiftTrackTimes(track, 100));
    EXPECT_EQ(Times(track), (Times16{100, 65500, 65535}));
    // Its time now differs from the shifted events before it.
    EXPECT_EQ(TimedFlags(track), (Flags{1, 1, 0}));

    // Stopping at the first event has nothing before it to mark.
    CMmt8Track early = TrackOf(0, Untimed(Note(10, 1, 1)), Note(500, 2, 1));
    EXPECT_FALSE(ShiftTrackTimes(early, -11));
    EXPECT_EQ(Times(early), (Times16{10, 500}));
    EXPECT_EQ(TimedFlags(early), (Flags{0, 1}));
}

TEST(TrackTest, LastEventTimeIsTheTimeOfTheLastEvent)
{
    std::uint16_t time = 77;
    EXPECT_FALSE(GetLastEventTime(CMmt8Track{}, time));
    EXPECT_EQ(time, 77);
    EXPECT_TRUE(GetLastEventTime(
        TrackOf(0, Note(0, 1, 1), Note(300, 1, 1), Untimed(Make<CMmt8ControlEvent>(300, 0, 1, 1))),
        time));
    EXPECT_EQ(time, 300);
}

TEST(TrackTest, CopyingATrackCopiesItsEvents)
{
    CMmt8Track original = TrackOfEveryKind();
    CMmt8Track copy = original;
    EXPECT_TRUE(SameTrack(copy, original));
    original.events[0]->time = 999;
    original.Clear();
    EXPECT_EQ(original.channel, 0);
    EXPECT_TRUE(original.events.empty());
    EXPECT_TRUE(SameTrack(copy, TrackOfEveryKind()));
}

} // namespace
} // namespace tarvix::test
