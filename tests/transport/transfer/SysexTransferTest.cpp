#include "transport/transfer/SysexTransfer.h"

#include "ScriptedView.h"
#include "support/PortTestSupport.h"

#include <gtest/gtest.h>

namespace tarvix::test {
namespace {

class SysexTransferTest : public LoopbackPortTest {
protected:
    std::uint32_t ReceivedTotal()
    {
        std::uint32_t total = 0;
        for (const Bytes& message : CopyMessages(input))
            total += static_cast<std::uint32_t>(message.size());
        return total;
    }

    ScriptedView view;
    CSysexTransfer transfer{input, output, view};
};

// Identified as the device's dump by its header alone.
Bytes DumpLike(std::size_t size)
{
    Bytes bytes(size, 0x00);
    const Bytes header = {0xF0, 0x00, 0x00, 0x0E, 0x00};
    std::copy(header.begin(), header.end(), bytes.begin());
    bytes.back() = 0xF7;
    return bytes;
}

TEST_F(SysexTransferTest, ClosedPortsAreReportedWithoutProgress)
{
    EXPECT_FALSE(transfer.RunTransfer(AwaitedSysex::Mmt8Dump));
    EXPECT_FALSE(transfer.SendBytes(MakeSysex(10)));
    EXPECT_EQ(view.reported, (std::vector<std::string>{"Midi Input device is not open\n",
                                                       "Midi Output device is not open\n"}));
    EXPECT_FALSE(view.shown);
}

TEST_F(SysexTransferTest, BytesThatAreNotSysexMessagesAreRefused)
{
    OpenOutput(256, 4);
    EXPECT_FALSE(transfer.SendBytes(Bytes{0xF0, 0x01, 0xF7, 0x7F}));
    EXPECT_EQ(view.reported,
              std::vector<std::string>{
                  "Can't start sending SysEx message, error: Invalid SysEx format\n"});
    EXPECT_FALSE(view.shown);
}

TEST_F(SysexTransferTest, AfterARefusedSendStepThePortsTextIsReported)
{
    OpenOutput(256, 4);
    driver.longMsgResult = kMidiNotReady;
    ASSERT_TRUE(output.QueueSysex(MakeSysex(10), false));
    ASSERT_TRUE(Eventually([&] { return output.GetLastError() == kMidiNotReady; }));

    EXPECT_FALSE(transfer.SendBytes(Bytes{0x00}));
    EXPECT_EQ(view.reported, std::vector<std::string>{"Can't start sending SysEx message, error: " +
                                                      driver.GetErrorText(kMidiNotReady) + "\n"});
}

TEST_F(SysexTransferTest, SendProgressFollowsTheQueueUntilTheLastMessageLeaves)
{
    OpenOutput(64, 2);
    device.SetHoldOutput(true);
    const Bytes bytes = Concat(MakeSysex(100, 1), MakeSysex(200, 2));
    view.beforeTick = [&](int tick) {
        if (tick == 0)
            return Eventually([&] { return SentBytes() == 100; });
        device.ReleaseOutput(1);
        return true;
    };

    EXPECT_TRUE(transfer.SendBytes(bytes));

    EXPECT_EQ(view.start.text, "Sending 300 bytes");
    EXPECT_EQ(view.start.range, 300u);
    ASSERT_FALSE(view.frames.empty());
    EXPECT_EQ(view.frames[0].position, 100u);
    for (std::size_t i = 1; i < view.frames.size(); ++i)
        EXPECT_LE(view.frames[i - 1].position, view.frames[i].position);
    // The transfer ends only once the last piece is on the device.
    EXPECT_EQ(device.TakeReceived(), bytes);
}

TEST_F(SysexTransferTest, ReceiveShowsThePromptThenTheGrowingDumpAndEnds)
{
    OpenInput(256, 64);
    const Bytes dump = DumpLike(40000);
    view.beforeTick = [&](int tick) {
        if (tick == 1) {
            device.Feed(dump.data(), 10000);
            return Eventually([&] { return ReceivedTotal() == 39 * 256; });
        }
        if (tick == 2) {
            device.Feed(dump.data() + 10000, dump.size() - 10000);
            return Eventually([&] { return ReceivedTotal() == 40000; });
        }
        return true;
    };
    CSysexTransfer receive(input, output, view, kMmt8MemoryCapacity, kReceiveDumpPrompt);

    EXPECT_TRUE(receive.RunTransfer(AwaitedSysex::Mmt8Dump));

    ASSERT_EQ(view.frames.size(), 3u);
    EXPECT_EQ(view.frames[0].text, kReceiveDumpPrompt);
    EXPECT_EQ(view.frames[0].position, 0u);
    EXPECT_EQ(view.frames[1].text, "Receiving Alesis MMT8 sysex 9984 bytes\n");
    EXPECT_EQ(view.frames[1].position, 9984u);
    EXPECT_EQ(view.frames[2].text, "Received Alesis MMT8 sysex 40000 bytes\n");
    EXPECT_EQ(view.frames[2].range, kMmt8MemoryCapacity);
    EXPECT_FALSE(input.IsStarted());
}

TEST_F(SysexTransferTest, ListsTheLastThreeMessagesAndCountsUpToTheDump)
{
    OpenInput(256, 64);
    const Bytes unknown = {0xF0, 0x7E, 0x01, 0xF7};
    view.beforeTick = [&](int tick) {
        if (tick == 0)
            device.Feed(Concat(Concat(Concat(unknown, unknown), DumpLike(70000)), unknown));
        return Eventually([&] { return CopyMessages(input).size() == 4; });
    };

    EXPECT_TRUE(transfer.RunTransfer(AwaitedSysex::Mmt8Dump));

    // The message after the dump is neither shown nor counted; the bar
    // stays full past its range.
    ASSERT_EQ(view.frames.size(), 1u);
    EXPECT_EQ(view.frames[0].text, "Received unknown sysex 4 bytes\n"
                                   "Received Alesis MMT8 sysex 70000 bytes\n");
    EXPECT_EQ(view.frames[0].position, kMmt8MemoryCapacity);
}

TEST_F(SysexTransferTest, SendAndReceiveShowWhatWasSentAboveWhatArrives)
{
    OpenInput(256, 64);
    OpenOutput(256, 4);
    device.SetReceiver([&](const std::uint8_t*, std::size_t) { device.Feed(DumpLike(500)); });

    EXPECT_TRUE(transfer.RunTransfer(AwaitedSysex::Mmt8Dump, Bytes{0xF0, 0x00, 0x01, 0xF7}));

    ASSERT_FALSE(view.frames.empty());
    EXPECT_EQ(view.frames.back().text, "Sent 4 bytes\nReceived Alesis MMT8 sysex 500 bytes\n");
}

TEST_F(SysexTransferTest, ASendWhosePortFailsEndsWithAMessageAndFalse)
{
    OpenOutput(64, 4);
    device.SetHoldOutput(true);
    const Bytes bytes = MakeSysex(1000);
    view.beforeTick = [this](int tick) {
        if (tick == 0) {
            EXPECT_TRUE(Eventually([&] { return device.GetHeldOutputCount() == 4; }));
            device.ReleaseOutput(2);
            device.FailOutput("The JACK server has shut down.");
        }
        return true;
    };

    EXPECT_FALSE(transfer.SendBytes(bytes));

    ASSERT_EQ(view.reported.size(), 1u);
    EXPECT_EQ(view.reported[0],
              "Sending stopped after 128 of 1000 bytes: The JACK server has shut down.\n");
}

TEST_F(SysexTransferTest, LostInputBytesAreShownWithTheTransfer)
{
    OpenInput(256, 8);
    view.beforeTick = [this](int tick) {
        if (tick == 0) {
            // A status byte cuts the first message; its end is lost.
            device.Feed({0xF0, 0x01, 0x02, 0x90, 0x40, 0x7F, 0xF7});
            device.Feed(DumpLike(100));
        }
        return Eventually([&] { return CopyMessages(input).size() == 2; });
    };

    EXPECT_TRUE(transfer.RunTransfer(AwaitedSysex::Mmt8Dump));

    ASSERT_FALSE(view.frames.empty());
    EXPECT_NE(view.frames.back().text.find("4 bytes were lost while receiving\n"),
              std::string::npos)
        << view.frames.back().text;
}

} // namespace
} // namespace tarvix::test
