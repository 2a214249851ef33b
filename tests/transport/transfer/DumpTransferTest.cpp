#include "transport/transfer/DumpTransfer.h"

#include "ScriptedView.h"
#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "support/PortTestSupport.h"
#include "support/SeededDocuments.h"

#include <gtest/gtest.h>

#include <random>

namespace tarvix::test {
namespace {

using tarvix::testing::DifferenceFrom;
using tarvix::testing::DumpOf;
using tarvix::testing::MakeDocument;

class DumpTransferTest : public LoopbackPortTest {
protected:
    void SetUp() override { OpenInput(256, 64); }

    // The device answers the Receive with these bytes; then the user waits.
    void AnswerWith(const Bytes& bytes, std::size_t messages)
    {
        view.beforeTick = [this, bytes, messages](int tick) {
            if (tick == 0)
                device.Feed(bytes);
            return WaitForMessages(messages);
        };
    }

    ScriptedView view;
    CMmt8Memory memory;
};

TEST_F(DumpTransferTest, ReceiveLoadsTheDumpAndSkipsOtherTraffic)
{
    const Bytes dump = DumpOf(1);
    AnswerWith(Concat(MakeSysex(30), dump), 2);
    Bytes loaded;

    EXPECT_TRUE(ReceiveDump(input, output, memory, view, &loaded));

    EXPECT_EQ(DifferenceFrom(1, memory), "");
    EXPECT_EQ(memory.modified, 1);
    EXPECT_EQ(loaded, dump);
    EXPECT_TRUE(view.reported.empty());
}

TEST_F(DumpTransferTest, OfTwoDumpsTheFirstIsLoaded)
{
    AnswerWith(Concat(DumpOf(2), DumpOf(3)), 2);
    EXPECT_TRUE(ReceiveDump(input, output, memory, view));
    EXPECT_EQ(DifferenceFrom(2, memory), "");
}

TEST_F(DumpTransferTest, CancelLeavesTheDocumentAsItWas)
{
    MakeDocument(memory, 4);
    view.beforeTick = [this](int) {
        device.Feed(DumpOf(5));
        WaitForMessages(1);
        return false;
    };

    EXPECT_FALSE(ReceiveDump(input, output, memory, view));

    EXPECT_EQ(DifferenceFrom(4, memory), "");
    EXPECT_EQ(memory.modified, 0);
    EXPECT_FALSE(input.IsStarted());
    // What arrived stays until the next receive starts.
    EXPECT_EQ(CopyMessages(input).size(), 1u);
}

TEST_F(DumpTransferTest, AnIncompleteDumpIsNeverLoaded)
{
    const Bytes dump = DumpOf(6);
    input.StartReceive();
    device.Feed(Bytes(dump.begin(), dump.end() - 1));
    input.Stop();
    ASSERT_EQ(CopyMessages(input).size(), 1u);

    EXPECT_FALSE(LoadReceivedDump(input, memory, nullptr));
    EXPECT_EQ(memory.modified, 0);
}

TEST_F(DumpTransferTest, ADumpReceivedWhileBytesWereLostIsNotLoaded)
{
    // The hole is in another message: the dump itself may be whole, but
    // nothing says which bytes went; none is trusted.
    const Bytes dump = DumpOf(8);
    input.StartReceive();
    device.Feed({0xF0, 0x43, 0x10, 0x80, 0x00, 0x00});
    device.Feed(dump);
    input.Stop();

    std::vector<std::string> reported;
    EXPECT_FALSE(LoadReceivedDump(
        input, memory, [&reported](const std::string& text) { reported.push_back(text); }));
    EXPECT_EQ(memory.modified, 0);
    ASSERT_EQ(reported.size(), 1u);
    EXPECT_EQ(reported[0], "3 bytes were lost while receiving; the dump was not loaded.\n");
}

TEST_F(DumpTransferTest, SendTransmitsTheDocumentsDump)
{
    OpenOutput(256, 8);
    MakeDocument(memory, 7);

    EXPECT_TRUE(SendDump(input, output, memory, view));

    EXPECT_EQ(device.TakeReceived(), DumpOf(7));
    EXPECT_TRUE(view.reported.empty());
}

} // namespace
} // namespace tarvix::test
