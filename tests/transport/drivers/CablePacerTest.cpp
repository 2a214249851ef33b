#include "transport/drivers/CablePacer.h"

#include <gtest/gtest.h>

namespace tarvix::test {
namespace {

using namespace std::chrono_literals;

// A clock that moves only when the test moves it.
class SteppedClock {
public:
    CCablePacer::Clock Clock()
    {
        return [this] { return m_now; };
    }
    void Advance(std::chrono::nanoseconds by) { m_now += by; }
    CCablePacer::TimePoint Now() const { return m_now; }

private:
    CCablePacer::TimePoint m_now = CCablePacer::TimePoint{} + 1000s;
};

constexpr auto kByte = CCablePacer::kByteTime;

TEST(CablePacerTest, TheCableCarriesOneByteEvery320Microseconds)
{
    EXPECT_EQ(kByte, 320us);
    EXPECT_EQ(CCablePacer::kByteTime * CCablePacer::kBytesPerSecond, 1s);
}

TEST(CablePacerTest, AGreedySenderNeverRunsAheadOfTheCablePlusTheLead)
{
    SteppedClock clock;
    CCablePacer pacer(1024, clock.Clock());
    const auto start = clock.Now();
    std::size_t handed = 0;
    // Ten seconds of a sender that hands over all it may, one byte time at
    // a time, checked after every step.
    for (int step = 0; step < 31250; ++step) {
        const std::size_t allowed = pacer.GetAllowance();
        pacer.Hand(allowed);
        handed += allowed;
        const auto carried = static_cast<std::size_t>((clock.Now() - start) / kByte);
        ASSERT_LE(handed, carried + 1024) << "step " << step;
        // And no slower than the cable: it is kept full.
        ASSERT_GE(handed, carried + 1024 - 1) << "step " << step;
        clock.Advance(kByte);
    }
    EXPECT_EQ(handed, 31250u + 1024u - 1);
}

TEST(CablePacerTest, AllowanceGrowsByteByByteAsTheCableCarriesThem)
{
    SteppedClock clock;
    CCablePacer pacer(1024, clock.Clock());
    EXPECT_EQ(pacer.GetAllowance(), 1024u);
    pacer.Hand(1024);
    EXPECT_EQ(pacer.GetAllowance(), 0u);
    EXPECT_EQ(pacer.GetBacklog(), 1024u);
    clock.Advance(kByte - 1ns); // a byte partly on the wire still takes its room
    EXPECT_EQ(pacer.GetAllowance(), 0u);
    clock.Advance(1ns);
    EXPECT_EQ(pacer.GetAllowance(), 1u);
    clock.Advance(kByte * 255);
    EXPECT_EQ(pacer.GetAllowance(), 256u);
}

TEST(CablePacerTest, WhenAllowedAndDrainedAtAreWhenTheCableHasCarriedEnough)
{
    SteppedClock clock;
    CCablePacer pacer(1024, clock.Clock());
    EXPECT_EQ(pacer.WhenAllowed(256), clock.Now());
    EXPECT_TRUE(pacer.IsDrained());

    pacer.Hand(1024);
    const auto handedAt = clock.Now();
    EXPECT_EQ(pacer.WhenAllowed(256), handedAt + kByte * 256);
    // More than the lead can never go at once: asked for, it waits as for
    // the lead.
    EXPECT_EQ(pacer.WhenAllowed(5000), handedAt + kByte * 1024);
    EXPECT_EQ(pacer.GetDrainedAt(), handedAt + kByte * 1024);
    clock.Advance(kByte * 1024 - 1ns);
    EXPECT_FALSE(pacer.IsDrained());
    clock.Advance(1ns);
    EXPECT_TRUE(pacer.IsDrained());
}

TEST(CablePacerTest, AnIdleCableGivesNoCreditBeyondTheLead)
{
    SteppedClock clock;
    CCablePacer pacer(1024, clock.Clock());
    pacer.Hand(100);
    clock.Advance(60s);
    EXPECT_EQ(pacer.GetAllowance(), 1024u);
    // A new send starts from now: its last byte leaves its size later.
    pacer.Hand(1024);
    EXPECT_EQ(pacer.GetDrainedAt(), clock.Now() + kByte * 1024);
}

TEST(CablePacerTest, WithCatchUpASenderWokenLateMakesUpWithinASendButNotBeforeIt)
{
    SteppedClock clock;
    CCablePacer pacer(32, clock.Clock(), 1s);
    pacer.Restart();
    pacer.Hand(32);
    // Woken 100 ms late: what the cable would have carried meanwhile may go.
    clock.Advance(100ms);
    EXPECT_EQ(pacer.GetAllowance(), 32u + static_cast<std::size_t>((100ms - kByte * 32) / kByte));
    // Never more than the catch-up, however late.
    clock.Advance(10s);
    EXPECT_EQ(pacer.GetAllowance(), 32u + static_cast<std::size_t>(1s / kByte));
    // A new send starts from now.
    pacer.Restart();
    EXPECT_EQ(pacer.GetAllowance(), 32u);
}

TEST(CablePacerTest, AsAReceiveBufferItKeepsWhatFitsAndDrainsAtCableSpeed)
{
    SteppedClock clock;
    CCablePacer buffer(4096, clock.Clock());
    EXPECT_EQ(buffer.Accept(5000), 4096u);
    EXPECT_EQ(buffer.Accept(1), 0u);
    clock.Advance(1s);
    EXPECT_EQ(buffer.Accept(4000), 3125u);
    // Bytes arriving at cable speed are all kept, however long.
    clock.Advance(10s);
    for (int i = 0; i < 10000; ++i) {
        ASSERT_EQ(buffer.Accept(1), 1u) << "byte " << i;
        clock.Advance(kByte);
    }
}

} // namespace
} // namespace tarvix::test
