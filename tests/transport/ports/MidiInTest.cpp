#include "support/PortTestSupport.h"

#include <gtest/gtest.h>

namespace tarvix::test {
namespace {

using MidiInTest = LoopbackPortTest;

TEST_F(MidiInTest, BuffersOfOneSysexAreJoinedIntoOneMessage)
{
    OpenInput(256, 16);
    input.StartReceive();
    // 1000 bytes come back in four buffers; only the first starts with F0.
    const std::vector<Bytes> sent = {MakeSysex(5, 1), MakeSysex(1000, 2), MakeSysex(256, 3)};
    device.Feed(Concat(Concat(sent[0], sent[1]), sent[2]));

    ASSERT_TRUE(WaitForMessages(3));
    EXPECT_EQ(CopyMessages(input), sent);
}

TEST_F(MidiInTest, BufferWithoutF0OnAnEmptyListStartsAMessageOfItsOwn)
{
    OpenInput(64, 4);
    input.StartReceive();
    const Bytes sysex = MakeSysex(75);
    device.Feed(sysex.data(), 64); // exactly one full buffer
    ASSERT_TRUE(Eventually([&] { return CopyMessages(input).size() == 1; }));

    input.FreeMessages();
    device.Feed(sysex.data() + 64, 11);

    ASSERT_TRUE(WaitForMessages(1));
    EXPECT_EQ(CopyMessages(input)[0], Bytes(sysex.begin() + 64, sysex.end()));
}

TEST_F(MidiInTest, StopKeepsWhatArrivedSoFarAndEndsReceiving)
{
    OpenInput(256, 4);
    input.StartReceive();
    const Bytes sysex = MakeSysex(200);
    const Bytes partial(sysex.begin(), sysex.begin() + 101);
    device.Feed(partial); // the driver still holds the buffer it went into

    input.Stop();

    // Stop returns only once the worker has taken in the returned buffer.
    EXPECT_EQ(CopyMessages(input), std::vector<Bytes>{partial});
    EXPECT_FALSE(input.IsStarted());
    EXPECT_TRUE(input.GetStopEvent().WaitFor(std::chrono::milliseconds(0)));
    device.Feed(MakeSysex(10));
    EXPECT_EQ(CopyMessages(input).size(), 1u);
}

TEST_F(MidiInTest, EveryReceiveStartsEmptyAndGetsEveryBufferBack)
{
    // One buffer only: a receive that lost it would get nothing.
    OpenInput(64, 1);
    for (std::uint8_t round = 0; round < 3; ++round) {
        input.StartReceive();
        EXPECT_TRUE(CopyMessages(input).empty());
        const Bytes sysex = MakeSysex(200, round);
        device.Feed(sysex);
        ASSERT_TRUE(WaitForMessages(1)) << "round " << int{round};
        EXPECT_EQ(CopyMessages(input)[0], sysex);
        input.Stop();
    }
}

TEST_F(MidiInTest, CloseWhileReceivingReturnsTheBuffersAndFreesThePort)
{
    OpenInput(256, 8);
    input.StartReceive();
    device.Feed(Bytes{0xF0, 0x01, 0x02});

    EXPECT_TRUE(input.Close());
    EXPECT_FALSE(input.IsOpen());
    EXPECT_FALSE(device.IsInputOpen());
    OpenInput(256, 8);
}

TEST_F(MidiInTest, StartAlwaysSucceedsAndResetsTheErrorCount)
{
    OpenInput(256, 4);
    input.StartReceive();
    driver.SendLongError();
    driver.SendLongError();
    EXPECT_EQ(input.GetErrorCount(), 2u);

    // A port that does not start keeps the code for the user to see.
    driver.startResult = kMidiNotReady;
    EXPECT_TRUE(input.StartReceive());
    EXPECT_EQ(input.GetErrorCount(), 0u);
    EXPECT_EQ(input.GetLastError(), kMidiNotReady);
}

} // namespace
} // namespace tarvix::test
