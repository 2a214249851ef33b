#include "EventBuilders.h"

#include <gtest/gtest.h>

#include <typeinfo>

namespace tarvix::test {
namespace {

struct Decoded {
    std::unique_ptr<CMmt8Event> event;
    std::size_t position = 0;
    std::uint16_t runningTime = 0;
};

// The bytes live in a vector of exactly their size, so a read past them is
// caught by the address sanitizer.
Decoded DecodeOne(const Bytes& bytes, std::uint16_t runningTime = 0)
{
    CByteCursor cursor{bytes, 0};
    Decoded result;
    result.runningTime = runningTime;
    result.event = DecodeEvent(cursor, result.runningTime);
    result.position = cursor.position;
    return result;
}

CMmt8Track DecodeAll(const Bytes& bytes, std::uint8_t channel = 0)
{
    CMmt8Track track;
    DecodeTrack(track, bytes, channel);
    return track;
}

const Bytes kTimedNote = {0x85, 0x30, 0x00, 0x64, 0x03, 0x00, 0x60};
const Bytes kUntimedVolume = {0x07, 0xE4, 0x00, 0x00, 0x00};
const Bytes kEndMark = {0x80, 0x00, 0x06, 0x00, 0x80, 0x00, 0x00};

// Running time 0x0123 going in shows which events take it over.
TEST(EventCodecTest, DecodesEveryKindAndEncodesBackTheSameBytes)
{
    struct Case {
        Bytes bytes;
        std::unique_ptr<CMmt8Event> expected;
    };
    // clang-format off
    const Case cases[] = {
        {kTimedNote, Note(48, 5, 96, 3, 100)},
        {{0x7E, 0x40, 0x02, 0x01, 0x02}, Untimed(Note(0x0123, 126, 0x0102, 2, 0x40))},
        {kUntimedVolume, Untimed(Make<CMmt8ControlEvent>(0x0123, 0, 7, 100))},
        {{0xF9, 0x00, 0x01, 0x80, 0x04, 0x00, 0x00}, Make<CMmt8ControlEvent>(0x0100, 4, 121, 0)},
        {{0xFA, 0x10, 0x00, 0x85, 0x02, 0x00, 0x00}, Make<CMmt8ProgramEvent>(0x10, 2, 5)},
        {{0x7B, 0xC0, 0x0F, 0x00, 0x00}, Untimed(Make<CMmt8AftertouchEvent>(0x0123, 15, 0x40))},
        {{0xFC, 0x00, 0x00, 0x80, 0x01, 0x00, 0x40}, Bend(0, 0x4000, 1)},
        {{0x7C, 0x80, 0x05, 0x7F, 0x00}, Untimed(Bend(0x0123, 0x007F, 5))},
        {{0xFD, 0x34, 0x12, 0xC3, 0x10, 0x00, 0x7F}, Make<CMmt8SysexEvent>(0x1234, 0x43, 0x10, 0x7F)},
        {{0x7D, 0xF7, 0x80, 0x00, 0x80}, Untimed(Make<CMmt8SysexEvent>(0x0123, 0x77, 0x80, 0x80))},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::PrintToString(c.bytes));
        const Decoded d = DecodeOne(c.bytes, 0x0123);
        ASSERT_TRUE(d.event);
        EXPECT_TRUE(SameEvent(*d.event, *c.expected));
        EXPECT_EQ(d.position, c.bytes.size());
        EXPECT_EQ(d.runningTime, c.expected->time);
        EXPECT_EQ(Encoded(*d.event), c.bytes);
    }
}

TEST(EventCodecTest, EndMarkEndsTheTrackWhateverItsLeadAndTime)
{
    const Decoded d = DecodeOne(kEndMark);
    EXPECT_FALSE(d.event);
    EXPECT_EQ(d.position, kEndMark.size());

    const CMmt8Track track = DecodeAll(Concat({kTimedNote, kEndMark, kTimedNote}));
    EXPECT_EQ(track.events.size(), 1u);
    // An untimed lead of any code still carries the end mark.
    EXPECT_EQ(
        DecodeAll(Concat({kTimedNote, {0x45, 0x00, 0x80, 0x00, 0x00}, kTimedNote})).events.size(),
        1u);
}

TEST(EventCodecTest, Codes126And127EndTheTrackKeepingEarlierEvents)
{
    for (const std::uint8_t lead : std::initializer_list<std::uint8_t>{0xFE, 0xFF, 0x7E, 0x7F}) {
        SCOPED_TRACE(static_cast<int>(lead));
        const Bytes unknown =
            (lead & 0x80) ? Bytes{lead, 0, 0, 0x80, 0, 0, 0} : Bytes{lead, 0x80, 0, 0, 0};
        const CMmt8Track track =
            DecodeAll(Concat({kTimedNote, kUntimedVolume, unknown, kTimedNote}));
        ASSERT_EQ(track.events.size(), 2u);
        EXPECT_EQ(track.events[1]->GetTypeCode(), kControlEventType);
    }
}

TEST(EventCodecTest, TruncatedBytesEndTheTrackWithoutReadingPastThem)
{
    const Bytes whole = Concat({kTimedNote, kUntimedVolume});
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        SCOPED_TRACE(size);
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        const std::size_t complete = size >= 12 ? 2 : size >= 7 ? 1 : 0;
        const CMmt8Track track = DecodeAll(cut);
        EXPECT_EQ(track.events.size(), complete);

        // The cursor never moves past the end, and once there it stays put.
        CByteCursor cursor{cut, 0};
        std::uint16_t runningTime = 0;
        while (DecodeEvent(cursor, runningTime)) {
        }
        EXPECT_LE(cursor.position, cut.size());
        const std::size_t before = cursor.position;
        EXPECT_FALSE(DecodeEvent(cursor, runningTime));
        EXPECT_EQ(cursor.position, before);
    }
}

TEST(EventCodecTest, RunningTimeStartsAtZeroAndCarriesToUntimedEvents)
{
    const CMmt8Track track = DecodeAll(Concat({kUntimedVolume, kTimedNote, kUntimedVolume}), 11);
    EXPECT_EQ(track.channel, 11);
    ASSERT_EQ(track.events.size(), 3u);
    EXPECT_EQ(track.events[0]->time, 0);
    EXPECT_EQ(track.events[0]->timed, 0u);
    EXPECT_EQ(track.events[2]->time, 48);
    EXPECT_EQ(track.events[2]->timed, 0u);
}

// Channels are kept as found; the encoder writes only what the device holds.
TEST(EventCodecTest, EncoderMasksChannelAndSevenBitValues)
{
    const Decoded d = DecodeOne({0x85, 0x30, 0x00, 0x64, 0x13, 0x00, 0x60});
    ASSERT_TRUE(d.event);
    EXPECT_EQ(d.event->channel, 0x13);
    EXPECT_EQ(Encoded(*d.event), kTimedNote);

    EXPECT_EQ(Encoded(*Note(0x0201, 0x85, 0xABCD, 0x1F, 0xE4)),
              (Bytes{0x85, 0x01, 0x02, 0x64, 0x0F, 0xAB, 0xCD}));
    EXPECT_EQ(Encoded(*Untimed(Make<CMmt8ProgramEvent>(7, 0x21, 0x05))),
              (Bytes{0x7A, 0x85, 0x01, 0x00, 0x00}));
}

TEST(EventCodecTest, EncodeTrackEndsWithTheEndMarkAndDecodesBack)
{
    CByteBuffer empty;
    EncodeTrack(CMmt8Track{}, empty, 384);
    EXPECT_EQ(ToBytes(empty), (Bytes{0x80, 0x80, 0x01, 0x00, 0x80, 0x00, 0x00}));

    const CMmt8Track track = TrackOfEveryKind();
    CByteBuffer out;
    EncodeTrack(track, out);
    EXPECT_EQ(out.GetSize(), GetTrackSize(track));
    EXPECT_TRUE(SameTrack(DecodeAll(ToBytes(out), track.channel), track));
}

TEST(EventCodecTest, CloneGivesAnEqualEventOfTheSameClass)
{
    const CMmt8Track track = TrackOfEveryKind();
    for (const auto& event : track.events) {
        SCOPED_TRACE(event->GetTypeCode());
        const auto copy = CloneEvent(*event);
        ASSERT_TRUE(copy);
        EXPECT_NE(copy.get(), event.get());
        const CMmt8Event& original = *event;
        const CMmt8Event& clone = *copy;
        EXPECT_TRUE(typeid(clone) == typeid(original));
        EXPECT_TRUE(SameEvent(*copy, *event));
    }
}

class CForeignEvent final : public CMmt8Event {
public:
    void Encode(CByteBuffer&) const override {}
    void List(CTextBuilder&) const override {}
    unsigned GetTypeCode() const override { return 126; }
};

TEST(EventCodecTest, CloneOfAnUnknownKindGivesNothing)
{
    EXPECT_FALSE(CloneEvent(CForeignEvent{}));
}

} // namespace
} // namespace tarvix::test
