#include "EventBuilders.h"

#include "model/Mmt8Memory.h"

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <string>
#include <tuple>
#include <vector>

namespace tarvix::test {
namespace {

using Steps = std::vector<Mmt8Step>;
using M = CMmt8Memory;

// Everything the operations can change, as one comparable text.
std::string Describe(const CMmt8Memory& memory)
{
    std::string text;
    for (int part = 0; part < kPartCount; ++part) {
        const CMmt8Part& p = memory.Part(part);
        text += std::to_string(p.beats) + p.name + ":";
        for (const auto& track : p.tracks)
            text += std::to_string(track.channel) + "/" + std::to_string(track.events.size()) +
                    "/" + std::to_string(GetTrackSize(track)) + ",";
    }
    for (int song = 0; song < kSongCount; ++song) {
        const CMmt8Song& s = memory.Song(song);
        text += std::to_string(s.tempo) + s.name + ":";
        for (const Mmt8Step step : s.steps)
            text += std::to_string(step.part) + "/" + std::to_string(step.trackMask) + ",";
    }
    return text;
}

class MemoryOperationsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        CMmt8Part& part = m_memory.Part(3);
        part.beats = 4;
        part.name = "BASS";
        part.tracks[0] = TrackOf(2, Note(0, 36, 96), Note(300, 38, 200),
                                 Make<CMmt8ControlEvent>(384, 0, 7, 100));
        part.tracks[2] = TrackOf(0, Make<CMmt8ProgramEvent>(10, 0, 1), Note(191, 40, 5));
        part.tracks[5] = TrackOf(16, Note(0, 50, 1));
        m_memory.Song(1).tempo = 100;
        m_memory.Song(1).name = "SONG";
        m_memory.Song(1).steps = kThreeSteps;
    }

    static inline const Steps kThreeSteps = {{5, 0xFF}, {7, 0x03}, {9, 0xFF}};
    CMmt8Memory m_memory;
};

TEST_F(MemoryOperationsTest, OutOfRangeIndicesReturnFalseAndChangeNothing)
{
    const std::vector<std::function<bool(M&)>> operations = {
        [](M& m) { return m.ClearPart(100); },
        [](M& m) { return m.ClearTrack(100, 0); },
        [](M& m) { return m.ClearTrack(-1, 0); },
        [](M& m) { return m.ClearTrack(3, 8); },
        [](M& m) { return m.ClearTrack(3, -2); },
        [](M& m) { return m.ClearSong(100); },
        [](M& m) { return m.DeleteStep(-1, 0); },
        [](M& m) { return m.DeleteStep(1, 3); },
        [](M& m) { return m.InsertStep(100, 0); },
        [](M& m) { return m.InsertStep(1, 4); },
        [](M& m) { return m.InsertStep(1, -1); },
        [](M& m) { return m.ChangeStepPart(1, 3, 1); },
        [](M& m) { return m.ChangeStepPart(100, 0, 1); },
        [](M& m) { return m.AppendStep(100, 0, 0xFF); },
        [](M& m) { return m.AppendStep(1, 100, 0xFF); },
        [](M& m) { return m.SetPartBeats(100, 1); },
        [](M& m) { return m.SetPartBeats(3, 683); },
        [](M& m) { return m.RecomputePartBeats(-1); },
        [](M& m) { return m.SetTrackChannel(3, 8, 1); },
        [](M& m) { return m.SetTrackChannel(100, 0, 1); },
        [](M& m) { return m.SetSongTempo(-1, 120); },
        [](M& m) { return m.SetPartName(100, "X"); },
        [](M& m) { return m.SetSongName(-1, "X"); },
        [](M& m) { return m.CopyTracksInWindow(100, 3, 0xFF, 0, 1000); },
        [](M& m) { return m.CopyTracksInWindow(4, -1, 0xFF, 0, 1000); },
    };
    const std::string before = Describe(m_memory);
    for (std::size_t i = 0; i < operations.size(); ++i) {
        SCOPED_TRACE("operation " + std::to_string(i));
        EXPECT_FALSE(operations[i](m_memory));
        EXPECT_EQ(Describe(m_memory), before);
    }
}

TEST_F(MemoryOperationsTest, ClearOneOrMinusOneForAll)
{
    EXPECT_TRUE(m_memory.ClearTrack(3, 0));
    EXPECT_TRUE(m_memory.Part(3).tracks[0].events.empty());
    EXPECT_EQ(m_memory.Part(3).tracks[2].events.size(), 2u);
    EXPECT_TRUE(m_memory.ClearTrack(3, -1));
    EXPECT_EQ(m_memory.Part(3).beats, 4u); // beats and name stay
    EXPECT_EQ(m_memory.Part(3).name, "BASS");
    EXPECT_EQ(m_memory.GetPartSize(3), 42u + 8 * 7);
    EXPECT_TRUE(m_memory.DeleteStep(1, -1));
    EXPECT_TRUE(m_memory.Song(1).steps.empty());
    EXPECT_EQ(m_memory.Song(1).tempo, 100);

    EXPECT_TRUE(m_memory.ClearPart(3));
    EXPECT_TRUE(m_memory.Part(3).IsEmpty());
    EXPECT_TRUE(m_memory.Part(3).name.empty());
    EXPECT_TRUE(m_memory.ClearSong(1));
    EXPECT_TRUE(m_memory.Song(1).IsEmpty());
    EXPECT_TRUE(m_memory.ClearPart(-1));
    EXPECT_TRUE(m_memory.ClearSong(-1));
    EXPECT_EQ(Describe(m_memory), Describe(CMmt8Memory{}));
}

TEST_F(MemoryOperationsTest, InsertStepCopiesTheStepAtTheIndexOrAppendsADefault)
{
    EXPECT_TRUE(m_memory.InsertStep(1, 2));
    EXPECT_EQ(m_memory.Song(1).steps, (Steps{{5, 0xFF}, {7, 0x03}, {9, 0xFF}, {9, 0xFF}}));
    m_memory.Song(1).steps = kThreeSteps;
    EXPECT_TRUE(m_memory.InsertStep(1, 3));
    EXPECT_EQ(m_memory.Song(1).steps, (Steps{{5, 0xFF}, {7, 0x03}, {9, 0xFF}, {0, 0xFF}}));
    EXPECT_TRUE(m_memory.InsertStep(1, 1));
    EXPECT_EQ(m_memory.Song(1).steps[1], (Mmt8Step{7, 0x03}));
    EXPECT_EQ(m_memory.Song(1).steps[2], (Mmt8Step{7, 0x03}));
    EXPECT_TRUE(m_memory.DeleteStep(1, 1));
    EXPECT_EQ(m_memory.Song(1).steps, (Steps{{5, 0xFF}, {7, 0x03}, {9, 0xFF}, {0, 0xFF}}));
}

TEST_F(MemoryOperationsTest, StepCountStopsAt255)
{
    m_memory.Song(2).steps.assign(254, Mmt8Step{1, 0x0F});
    EXPECT_TRUE(m_memory.InsertStep(2, 0));
    EXPECT_FALSE(m_memory.InsertStep(2, 255));
    EXPECT_FALSE(m_memory.InsertStep(2, 0));
    EXPECT_FALSE(m_memory.AppendStep(2, 1, 0xFF));
    EXPECT_EQ(m_memory.Song(2).steps.size(), 255u);
    EXPECT_TRUE(m_memory.DeleteStep(2, 254));
    EXPECT_TRUE(m_memory.AppendStep(2, 99, 0x81));
    EXPECT_EQ(m_memory.Song(2).steps.back(), (Mmt8Step{99, 0x81}));
}

TEST_F(MemoryOperationsTest, ChangeStepPartStaysWithinThePartNumbers)
{
    m_memory.Song(1).steps = {{0, 0xFF}, {99, 0x01}, {50, 0x02}};
    EXPECT_FALSE(m_memory.ChangeStepPart(1, 0, -1));
    EXPECT_FALSE(m_memory.ChangeStepPart(1, 1, +1));
    EXPECT_TRUE(m_memory.ChangeStepPart(1, 0, +1));
    EXPECT_TRUE(m_memory.ChangeStepPart(1, 1, -1));
    EXPECT_TRUE(m_memory.ChangeStepPart(1, 2, -1));
    EXPECT_EQ(m_memory.Song(1).steps, (Steps{{1, 0xFF}, {98, 0x01}, {49, 0x02}}));
}

TEST_F(MemoryOperationsTest, SetPartBeatsCutsEveryTrack)
{
    EXPECT_TRUE(m_memory.SetPartBeats(3, 2));
    EXPECT_EQ(m_memory.Part(3).beats, 2u);
    const auto& track0 = m_memory.Part(3).tracks[0];
    ASSERT_EQ(track0.events.size(), 1u); // 300 and 384 lie past clock 192
    EXPECT_EQ(m_memory.Part(3).tracks[2].events.size(), 2u);
    EXPECT_TRUE(m_memory.SetPartBeats(3, 682));
    EXPECT_EQ(m_memory.Part(3).beats, 682u);
    EXPECT_TRUE(m_memory.SetPartBeats(3, 0));
    EXPECT_TRUE(m_memory.Part(3).IsEmpty());
    EXPECT_TRUE(m_memory.Part(3).tracks[5].events.empty());
}

TEST_F(MemoryOperationsTest, RecomputePartBeatsHoldsTheLatestEvent)
{
    struct Case {
        std::uint16_t latest;
        std::uint32_t beats;
    };
    for (const Case c : {Case{0, 1}, Case{95, 1}, Case{96, 2}, Case{191, 2}}) {
        SCOPED_TRACE(c.latest);
        m_memory.Part(7).tracks[6] = TrackOf(0, Note(0, 1, 1), Note(c.latest, 1, 1));
        EXPECT_TRUE(m_memory.RecomputePartBeats(7));
        EXPECT_EQ(m_memory.Part(7).beats, c.beats);
    }
    EXPECT_TRUE(m_memory.RecomputePartBeats(3)); // latest over all tracks: 384
    EXPECT_EQ(m_memory.Part(3).beats, 5u);
    m_memory.Part(8).beats = 9;
    EXPECT_TRUE(m_memory.RecomputePartBeats(8));
    EXPECT_EQ(m_memory.Part(8).beats, 0u);
}

// A channel above 16 stores "Unchanged" (0); a tempo outside 20-255 the default.
TEST_F(MemoryOperationsTest, ChannelAndTempoOutsideTheirRangesStoreTheFallback)
{
    for (const auto& [given, channel, tempo] :
         std::initializer_list<std::tuple<unsigned, int, int>>{{0, 0, 120},
                                                               {16, 16, 120},
                                                               {17, 0, 120},
                                                               {19, 0, 120},
                                                               {20, 0, 20},
                                                               {255, 0, 255},
                                                               {256, 0, 120}}) {
        EXPECT_TRUE(m_memory.SetTrackChannel(3, 7, given));
        EXPECT_TRUE(m_memory.SetSongTempo(4, given));
        EXPECT_EQ(m_memory.Part(3).tracks[7].channel, channel) << given;
        EXPECT_EQ(m_memory.Song(4).tempo, tempo) << given;
    }
}

TEST_F(MemoryOperationsTest, NamesAreCutToFourteenAndLoseTrailingSpace)
{
    const std::pair<std::string, std::string> cases[] = {
        {"ABCDEFGHIJKLMNOP", "ABCDEFGHIJKLMN"},
        {"LEAD   ", "LEAD"},
        {"  LEAD", "  LEAD"},
        {"PAD \t\r\n", "PAD"},
        {"ABCDEFGHIJKLM XYZ", "ABCDEFGHIJKLM"},
        {std::string("AB\0CD", 5), "AB"},
        {"     ", ""},
    };
    for (const auto& [given, stored] : cases) {
        EXPECT_TRUE(m_memory.SetPartName(9, given));
        EXPECT_TRUE(m_memory.SetSongName(9, given));
        EXPECT_EQ(m_memory.Part(9).name, stored);
        EXPECT_EQ(m_memory.Song(9).name, stored);
    }
}

TEST_F(MemoryOperationsTest, CopyTracksInWindowCopiesTheMaskedTracks)
{
    m_memory.Part(4).tracks[1] = TrackOf(1, Note(0, 1, 1)); // not in the mask: kept
    m_memory.Part(4).tracks[2] = TrackOf(3, Note(0, 1, 1)); // in the mask: replaced
    EXPECT_TRUE(m_memory.CopyTracksInWindow(4, 3, 0x05, 96, 400));
    const CMmt8Part& target = m_memory.Part(4);
    EXPECT_EQ(target.name, "BASS");
    EXPECT_EQ(target.tracks[0].channel, 2);
    EXPECT_EQ(target.tracks[0].events.size(), 2u); // 300 and 384 as 204 and 288
    EXPECT_EQ(target.tracks[0].events[0]->time, 204);
    EXPECT_EQ(target.tracks[0].events[0]->timed, 1u);
    EXPECT_EQ(target.tracks[1].events.size(), 1u);
    EXPECT_EQ(target.tracks[2].channel, 0);
    EXPECT_EQ(target.tracks[2].events.size(), 1u);
    EXPECT_TRUE(target.tracks[5].events.empty());
    EXPECT_EQ(target.beats, 288u / 96 + 1);

    EXPECT_FALSE(m_memory.CopyTracksInWindow(5, 3, 0x02, 0, 1000));
    EXPECT_EQ(m_memory.Part(5).name, "BASS");
    EXPECT_EQ(m_memory.Part(5).beats, 0u);
}

TEST_F(MemoryOperationsTest, OperationsLeaveTheModifiedFlagToTheCaller)
{
    m_memory.SetPartBeats(3, 1);
    m_memory.SetSongName(1, "X");
    m_memory.InsertStep(1, 0);
    m_memory.CopyTracksInWindow(4, 3, 0xFF, 0, 100);
    EXPECT_EQ(m_memory.modified, 0);
    m_memory.modified = 1;
    m_memory.globalBlock.fill(0xAA);
    m_memory.InitMemory();
    EXPECT_EQ(m_memory.modified, 0);
    EXPECT_EQ(m_memory.globalBlock, CMmt8Memory{}.globalBlock);
    EXPECT_EQ(Describe(m_memory), Describe(CMmt8Memory{}));
}

TEST(MemorySizeTest, CountsPartsWithBeatsAndSongsWithSteps)
{
    CMmt8Memory memory;
    memory.Part(0).tracks[0] = TrackOf(0, Note(0, 1, 1)); // no beats: not counted
    memory.Song(5).tempo = 120;                           // no steps: not counted
    EXPECT_EQ(memory.GetMemorySize(), 530u);

    memory.Part(0).beats = 1;
    memory.Part(1).beats = 2;
    memory.Song(5).steps = {{0, 0xFF}, {1, 0xFF}};
    EXPECT_EQ(memory.GetPartSize(0), 42u + 7 * 7 + 14);
    EXPECT_EQ(memory.GetPartSize(1), 42u + 8 * 7);
    EXPECT_EQ(memory.GetSongSize(5), 18u + 2 * 2);
    EXPECT_EQ(memory.GetTrackSize(0, 0), 14u);
    EXPECT_EQ(memory.GetMemorySize(), 530u + 105 + 98 + 22);
}

TEST(MemorySizeTest, SongNinetyNineAlwaysCostsItsRecord)
{
    CMmt8Memory memory;
    memory.Song(99).steps = {{0, 0xFF}, {1, 0xFF}, {2, 0xFF}};
    EXPECT_EQ(memory.GetMemorySize(), 512u + 24);
    memory.Song(98).steps = {{0, 0xFF}};
    EXPECT_EQ(memory.GetMemorySize(), 512u + 24 + 20);
}

TEST(MemorySizeTest, CapacityTexts)
{
    EXPECT_EQ(GetMemoryText(CMmt8Memory{}.GetMemorySize()), "Memory available: 100%");
    EXPECT_EQ(GetMemoryText(64256), "Memory available: 0%");
    EXPECT_FALSE(ExceedsCapacity(64256));
    EXPECT_EQ(GetMemoryText(64257),
              "Size 64257 bytes, exceeds Alesis MMT8 memory capacity by 1 bytes");
    EXPECT_TRUE(ExceedsCapacity(64257));
    EXPECT_EQ(GetMemoryText(70000),
              "Size 70000 bytes, exceeds Alesis MMT8 memory capacity by 5744 bytes");
    // (64256 - 10000) * 100 / 63726 = 85.1, truncated.
    EXPECT_EQ(GetMemoryText(10000), "Memory available: 85%");
    // (64256 - 64000) * 100 / 63726 = 0.4
    EXPECT_EQ(GetMemoryText(64000), "Memory available: 0%");
    EXPECT_EQ(GetMemoryText(1167), "Memory available: 99%");
}

TEST(StepTracksTextTest, NamesThePlayingTracks)
{
    CMmt8Memory memory;
    const std::pair<std::uint8_t, const char*> cases[] = {
        {0x00, "None"}, {0xFF, "All"}, {0x05, "1 3 "}, {0x80, "8 "}, {0x7F, "1 2 3 4 5 6 7 "}};
    for (const auto& c : cases)
        EXPECT_TRUE(memory.AppendStep(0, 1, c.first));
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(memory.GetStepTracksText(0, static_cast<int>(i)), cases[i].second);
    EXPECT_EQ(memory.GetStepTracksText(0, 5), "");
    EXPECT_EQ(memory.GetStepTracksText(100, 0), "");
}

} // namespace
} // namespace tarvix::test
