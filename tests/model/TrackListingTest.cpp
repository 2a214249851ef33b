#include "EventBuilders.h"

#include "model/TrackListing.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tarvix::test {
namespace {

const std::string kHeader = "Time Ch Type Data\n----------------------------\n";

// The body line of one event in a listing with LF line ends.
std::string LineOf(std::unique_ptr<CMmt8Event> event)
{
    CMmt8Track track;
    track.events.push_back(std::move(event));
    const std::string text = ListTrack(track, LineEnds::Lf);
    return text.substr(kHeader.size());
}

TEST(TrackListingTest, NoteAndUntimedControllerAsTheViewShowsThem)
{
    const CMmt8Track track = TrackOf(0, Note(0x0060, 0x3C, 0x0060, 0, 0x64),
                                     Untimed(Make<CMmt8ControlEvent>(0x60, 0, 7, 0x64)));
    EXPECT_EQ(ListTrack(track), "Time Ch Type Data\r\n"
                                "----------------------------\r\n"
                                "0060 00 NOTE 3C 64 0060  C3\r\n"
                                "     00 CTRL 07 64       Volume\r\n");
    EXPECT_EQ(ListTrack(CMmt8Track{}, LineEnds::Lf), kHeader);
}

TEST(TrackListingTest, OneLineOfEachKind)
{
    EXPECT_EQ(LineOf(Note(0xABCD, 0, 0x1234, 15, 0x7F)), "ABCD 0F NOTE 00 7F 1234  C-2\n");
    EXPECT_EQ(LineOf(Untimed(Note(0, 127, 1))), "     00 NOTE 7F 64 0001  G8\n");
    EXPECT_EQ(LineOf(Make<CMmt8ControlEvent>(0x10, 1, 64, 0x7F)),
              "0010 01 CTRL 40 7F       Hold Pedal (on/off)\n");
    EXPECT_EQ(LineOf(Make<CMmt8ProgramEvent>(0x10, 9, 0)),
              "0010 09 PROG 00          Acoustic Grand\n");
    EXPECT_EQ(LineOf(Untimed(Make<CMmt8AftertouchEvent>(0, 14, 0x40))), "     0E ATCH 40\n");
    EXPECT_EQ(LineOf(Make<CMmt8SysexEvent>(0x0100, 0x43, 0x10, kSysexFiller)),
              "0100    SYSX 43 10 80\n");
    EXPECT_EQ(LineOf(Untimed(Make<CMmt8SysexEvent>(0, 0x7E, 0x7F, 0x09))),
              "        SYSX 7E 7F 09\n");
}

// The decimal is the stored bytes less the centre, not a 14-bit bend.
TEST(TrackListingTest, PitchBendShowsValueAndSignedOffsetFromCentre)
{
    EXPECT_EQ(LineOf(Bend(0, 0x2000)), "0000 00 PTCH 2000 -8192\n");
    EXPECT_EQ(LineOf(Bend(0, 0x4000, 3)), "0000 03 PTCH 4000 0\n");
    EXPECT_EQ(LineOf(Bend(0, 0x4100)), "0000 00 PTCH 4100 256\n");
    EXPECT_EQ(LineOf(Bend(0, 0x7F7F)), "0000 00 PTCH 7F7F 16255\n");
    EXPECT_EQ(LineOf(Bend(0, 0x0000)), "0000 00 PTCH 0000 -16384\n");
}

TEST(TrackListingTest, LineEndsDifferOnlyInTheCarriageReturn)
{
    const CMmt8Track track = TrackOfEveryKind();
    const std::string lf = ListTrack(track, LineEnds::Lf);
    const std::string crlf = ListTrack(track, LineEnds::Crlf);
    EXPECT_EQ(lf.find('\r'), std::string::npos);
    std::string expanded;
    for (const char c : lf) {
        if (c == '\n')
            expanded += '\r';
        expanded += c;
    }
    EXPECT_EQ(crlf, expanded);
    EXPECT_EQ(std::count(lf.begin(), lf.end(), '\n'), 2 + 7);
}

// A line on its own (a tooltip) names its time even when the listing
// leaves it to the line above.
TEST(TrackListingTest, OneEventLineAlwaysShowsItsTime)
{
    EXPECT_EQ(ListEventLine(*Note(0x0060, 0x3C, 0x0060, 0, 0x64)), "0060 00 NOTE 3C 64 0060  C3");
    EXPECT_EQ(ListEventLine(*Untimed(Make<CMmt8ControlEvent>(0x60, 0, 7, 0x64))),
              "0060 00 CTRL 07 64       Volume");
    EXPECT_EQ(ListEventLine(*Untimed(Make<CMmt8SysexEvent>(0x1234, 0x7E, 0x7F, 0x09))),
              "1234    SYSX 7E 7F 09");
}

} // namespace
} // namespace tarvix::test
