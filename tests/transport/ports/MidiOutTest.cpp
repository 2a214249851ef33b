#include "support/PortTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
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
        ASSERT_TRUE(Eventually([&] {
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

    ASSERT_TRUE(Eventually([&] { return device.GetHeldOutputCount() == 1 && SentBytes() == 10; }));
    // Free buffers do not start the second message while the first is out.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(device.GetHeldOutputCount(), 1u);

    device.ReleaseOutput();
    ASSERT_TRUE(
        Eventually([&] { return device.GetHeldOutputCount() == 1 && QueuedMessages() == 1; }));
    device.ReleaseOutput();
    ASSERT_TRUE(Eventually([&] { return QueuedMessages() == 0; }));
    EXPECT_EQ(device.TakeReceived(), both);
}

TEST_F(MidiOutTest, CloseWithBuffersOnTheWireTakesThemBackFirst)
{
    OpenOutput(64, 2);
    device.SetHoldOutput(true);
    ASSERT_TRUE(output.QueueSysex(MakeSysex(300), false));
    ASSERT_TRUE(Eventually([&] { return device.GetHeldOutputCount() == 2; }));

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
    ASSERT_TRUE(Eventually([&] { return output.GetLastError() == kMidiNotReady; }));
    EXPECT_EQ(QueuedMessages(), 1u);
    EXPECT_EQ(SentBytes(), 0u);

    driver.longMsgResult = kMidiNoError;
    const Bytes second = MakeSysex(20, 2);
    ASSERT_TRUE(output.QueueSysex(second, false));
    ASSERT_TRUE(Eventually([&] { return QueuedMessages() == 0; }));
    EXPECT_EQ(device.TakeReceived(), Concat(first, second));
}

// The pacer's clock, moved by the test; read from the worker as well.
class SteppedClock {
public:
    CCablePacer::Clock Clock()
    {
        return [this] { return CCablePacer::TimePoint{} + std::chrono::nanoseconds(m_now.load()); };
    }
    void Advance(std::chrono::nanoseconds by) { m_now += by.count(); }

private:
    std::atomic<std::int64_t> m_now{std::chrono::nanoseconds(std::chrono::hours(1)).count()};
};

class PacedMidiOutTest : public MidiOutTest {
protected:
    void OpenPaced(std::uint32_t bufferSize)
    {
        driver.softwareOnly = false;
        paced.SetBufferSize(bufferSize);
        paced.SetBufferCount(8);
        paced.SetBufferDelay(0);
        paced.SetSysexDelay(0);
        ASSERT_TRUE(paced.OpenByName(kPortName));
        ASSERT_TRUE(paced.IsPaced());
    }

    std::size_t Received()
    {
        m_received += device.TakeReceived().size();
        return m_received;
    }

    bool IsQueued() const
    {
        std::uint32_t total = 0;
        std::uint32_t sent = 0;
        std::uint32_t count = 0;
        return paced.GetQueueState(total, sent, count);
    }

    SteppedClock clock;
    CMidiOut paced{driver, clock.Clock()};

private:
    std::size_t m_received = 0;
};

TEST_F(PacedMidiOutTest, APortWithACableBehindItGetsNoMoreThanTheCableCarriesPlusTheLead)
{
    OpenPaced(256);
    ASSERT_TRUE(paced.QueueSysex(MakeSysex(3000), false));
    // The clock stands still: the lead goes at once, then nothing.
    ASSERT_TRUE(Eventually([&] { return Received() == CCablePacer::kDefaultLead; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_EQ(Received(), CCablePacer::kDefaultLead);

    // One buffer's worth of cable time lets exactly one more buffer go.
    clock.Advance(CCablePacer::kByteTime * 256);
    ASSERT_TRUE(Eventually([&] { return Received() == CCablePacer::kDefaultLead + 256; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_EQ(Received(), CCablePacer::kDefaultLead + 256);

    // The cable keeps carrying: step by step the rest goes.
    while (Received() < 3000) {
        const std::size_t before = Received();
        clock.Advance(CCablePacer::kByteTime * 256);
        ASSERT_TRUE(Eventually([&] { return Received() > before; }));
    }
    // All handed over is not done: the message stays queued until its last
    // byte could have left the cable.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_TRUE(IsQueued());
    clock.Advance(CCablePacer::kByteTime * CCablePacer::kDefaultLead);
    EXPECT_TRUE(Eventually([&] { return !IsQueued(); }));
}

TEST_F(PacedMidiOutTest, PiecesNeverExceedTheLeadHoweverLargeTheBuffers)
{
    OpenPaced(4096);
    device.SetHoldOutput(false);
    RecordPieces();
    ASSERT_TRUE(paced.QueueSysex(MakeSysex(2000), false));
    ASSERT_TRUE(Eventually([&] { return Pieces().size() == 1; }));
    clock.Advance(CCablePacer::kByteTime * 2000);
    ASSERT_TRUE(Eventually([&] { return Pieces().size() == 2; }));
    EXPECT_EQ(Pieces()[0].size(), CCablePacer::kDefaultLead);
    EXPECT_EQ(Pieces()[1].size(), 2000 - CCablePacer::kDefaultLead);
}

TEST_F(MidiOutTest, OnlyASoftwareOnlyPortOrAnExplicitChoiceGoesUnpaced)
{
    OpenOutput(256, 8);
    EXPECT_FALSE(output.IsPaced()); // Loopback: in process
    output.Close();
    driver.softwareOnly = false;
    OpenOutput(256, 8);
    EXPECT_TRUE(output.IsPaced());
    output.Close();
    output.SetPacing(CMidiOut::Pacing::None);
    OpenOutput(256, 8);
    EXPECT_FALSE(output.IsPaced());
    output.Close();
    driver.softwareOnly = true;
    output.SetPacing(CMidiOut::Pacing::Cable);
    OpenOutput(256, 8);
    EXPECT_TRUE(output.IsPaced());
}

TEST_F(MidiOutTest, APortThatFailsMidSendStopsAndCountsOnlyWhatWasHandedOver)
{
    OpenOutput(64, 4);
    device.SetHoldOutput(true);
    ASSERT_TRUE(output.QueueSysex(MakeSysex(300), false));
    ASSERT_TRUE(Eventually([&] { return device.GetHeldOutputCount() == 4; }));
    ASSERT_EQ(device.ReleaseOutput(1), 1u);
    device.FailOutput("The cable was pulled.");

    ASSERT_TRUE(Eventually([&] { return output.HasFailed(); }));
    EXPECT_EQ(output.GetFailure(), "The cable was pulled.");
    EXPECT_EQ(output.GetHandedOverBytes(), 64u);
    EXPECT_EQ(device.TakeReceived().size(), 64u);
    // The message stays queued and nothing more goes out.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(QueuedMessages(), 1u);
    EXPECT_EQ(device.GetHeldOutputCount(), 0u);
}

} // namespace
} // namespace tarvix::test
