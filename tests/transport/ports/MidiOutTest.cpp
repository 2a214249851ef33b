#include "PortTestSupport.h"

#include <gtest/gtest.h>

#include <mutex>

namespace tarvix::test {
namespace {

class MidiOutTest : public LoopbackPortTest {
protected:
    // Each piece the driver sends, as the device sees it.
    void RecordPieces()
    {
        device.SetReceiver([this](const std::uint8_t* data, std::size_t size) {
            std::lock_guard lock(m_mutex);
            m_pieces.emplace_back(data, data + size);
        });
    }

    std::vector<Bytes> Pieces()
    {
        std::lock_guard lock(m_mutex);
        return m_pieces;
    }

private:
    std::mutex m_mutex;
    std::vector<Bytes> m_pieces;
};

TEST_F(MidiOutTest, QueueSysexSplitsOnlyBackToBackMessages)
{
    struct Case {
        Bytes bytes;
        bool asOneMessage;
        bool result;
        std::uint32_t messages;
        std::uint32_t totalBytes;
    };
    const Case cases[] = {
        {{0xF0, 0x01, 0xF7, 0xF0, 0x02, 0xF7}, false, true, 2, 6},
        {{0xF0, 0x01, 0xF7, 0x00}, false, false, 1, 3},
        // The second search starts inside the message just queued.
        {{0x00, 0xF0, 0x01, 0xF7}, false, false, 1, 3},
        {{0xF7, 0xF0, 0x01, 0xF7}, false, false, 0, 0},
        {{0xF0, 0x01}, false, false, 0, 0},
        {{0x00, 0xF0, 0x01, 0xF7}, true, true, 1, 4},
        {{}, false, true, 0, 0},
    };
    // A closed port has no worker: the queue stays as QueueSysex left it.
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        output.FreeMessages();
        EXPECT_EQ(output.QueueSysex(cases[i].bytes, cases[i].asOneMessage), cases[i].result)
            << "case " << i;
        std::uint32_t total = 0;
        std::uint32_t sent = 0;
        std::uint32_t count = 0;
        EXPECT_EQ(output.GetQueueState(total, sent, count), cases[i].messages != 0) << "case " << i;
        EXPECT_EQ(count, cases[i].messages) << "case " << i;
        EXPECT_EQ(total, cases[i].totalBytes) << "case " << i;
    }
}

TEST_F(MidiOutTest, LargeMessageGoesOutInBufferPiecesAsBuffersReturn)
{
    OpenOutput(64, 2, 1, 1);
    RecordPieces();
    device.SetHoldOutput(true);
    const Bytes sysex = MakeSysex(300);
    ASSERT_TRUE(output.QueueSysex(sysex, false));

    // Both buffers are on the wire; each further piece waits for one back.
    for (std::uint32_t sent : {128u, 192u, 256u, 300u}) {
        ASSERT_TRUE(WaitUntil([&] {
            return device.GetHeldOutputCount() == 2 && SentBytes() == sent;
        })) << sent;
        device.ReleaseOutput(1);
    }
    device.ReleaseOutput();

    // The message is removed before the SysEx pause ends.
    ASSERT_TRUE(output.GetSysexSentEvent().WaitFor(std::chrono::seconds(20)));
    EXPECT_EQ(QueuedMessages(), 0u);
    const auto pieces = Pieces();
    ASSERT_EQ(pieces.size(), 5u);
    EXPECT_EQ(pieces.back().size(), 44u);
    Bytes joined;
    for (const Bytes& piece : pieces)
        joined = Concat(joined, piece);
    EXPECT_EQ(joined, sysex);
}

TEST_F(MidiOutTest, OnlyTheFirstMessageIsInFlight)
{
    OpenOutput(64, 4);
    device.SetHoldOutput(true);
    const Bytes both = Concat(MakeSysex(10, 1), MakeSysex(10, 2));
    ASSERT_TRUE(output.QueueSysex(both, false));

    ASSERT_TRUE(WaitUntil([&] { return device.GetHeldOutputCount() == 1 && SentBytes() == 10; }));
    // Free buffers do not start the second message while the first is out.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(device.GetHeldOutputCount(), 1u);

    device.ReleaseOutput();
    ASSERT_TRUE(
        WaitUntil([&] { return device.GetHeldOutputCount() == 1 && QueuedMessages() == 1; }));
    device.ReleaseOutput();
    ASSERT_TRUE(WaitUntil([&] { return QueuedMessages() == 0; }));
    EXPECT_EQ(device.TakeReceived(), both);
}

TEST_F(MidiOutTest, CloseWithBuffersOnTheWireTakesThemBackFirst)
{
    OpenOutput(64, 2);
    device.SetHoldOutput(true);
    ASSERT_TRUE(output.QueueSysex(MakeSysex(300), false));
    ASSERT_TRUE(WaitUntil([&] { return device.GetHeldOutputCount() == 2; }));

    EXPECT_TRUE(output.Close());
    EXPECT_FALSE(output.IsOpen());
    EXPECT_FALSE(device.IsOutputOpen());
    EXPECT_EQ(QueuedMessages(), 0u);
}

TEST_F(MidiOutTest, RefusedSendKeepsTheMessageAndTheCodeUntilTheNextWakeUp)
{
    OpenOutput(64, 2);
    driver.longMsgResult = kMidiNotReady;
    const Bytes first = MakeSysex(20, 1);
    ASSERT_TRUE(output.QueueSysex(first, false));
    ASSERT_TRUE(WaitUntil([&] { return output.GetLastError() == kMidiNotReady; }));
    EXPECT_EQ(QueuedMessages(), 1u);
    EXPECT_EQ(SentBytes(), 0u);

    driver.longMsgResult = kMidiNoError;
    const Bytes second = MakeSysex(20, 2);
    ASSERT_TRUE(output.QueueSysex(second, false));
    ASSERT_TRUE(WaitUntil([&] { return QueuedMessages() == 0; }));
    EXPECT_EQ(device.TakeReceived(), Concat(first, second));
}

} // namespace
} // namespace tarvix::test
