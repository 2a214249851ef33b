// tarvix-cli import: a MIDI file into parts and songs, as the editor does it.
#include "CliDocuments.h"
#include "CliRunner.h"

#include "model/Mmt8Memory.h"
#include "support/FileTestSupport.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

namespace tarvix::testing {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::string>;

Bytes TrackChunk(const Bytes& events)
{
    const auto length = static_cast<std::uint32_t>(events.size() + 4);
    Bytes chunk = {'M', 'T', 'r', 'k', 0, 0, std::uint8_t(length >> 8), std::uint8_t(length)};
    chunk.insert(chunk.end(), events.begin(), events.end());
    chunk.insert(chunk.end(), {0x00, 0xFF, 0x2F, 0x00});
    return chunk;
}

// Division 96 (a tick is a clock). Track 1: name "Song", 90 BPM, markers
// "One" at 0 and "Two" at 384. Track 2: channel prefix 2 (channel 3), a note
// of 96 clocks, an All Notes Off, and a program change at 464.
Bytes SongFile()
{
    Bytes file = {'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 1, 0, 2, 0, 96};
    for (const Bytes& track :
         {TrackChunk({0x00, 0xFF, 0x03, 4,    'S',  'o',  'n',  'g',  0x00, 0xFF,
                      0x51, 3,    0x0A, 0x2C, 0x2A, 0x00, 0xFF, 0x06, 3,    'O',
                      'n',  'e',  0x83, 0x00, 0xFF, 0x06, 3,    'T',  'w',  'o'}),
          TrackChunk({0x00, 0xFF, 0x20, 1,    2,   0x00, 0x92, 60,   100,  0x60, 0x82,
                      60,   0,    0x00, 0xB2, 123, 0,    0x82, 0x70, 0xC2, 7})})
        file.insert(file.end(), track.begin(), track.end());
    return file;
}

class CliImportTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        CMmt8Memory memory;
        memory.AppendStep(1, 4, 0xFF);
        memory.AppendStep(1, 6, 0xFF);
        memory.SetSongTempo(1, 120);
        AppendEvent(memory.Part(6).tracks[7], std::make_unique<CMmt8ProgramEvent>());
        memory.RecomputePartBeats(6);
        m_syx = SaveDump(memory, m_folder, "in.syx");
        WriteAllBytes(m_mid, SongFile());
    }

    CliResult Import(const Words& more) const
    {
        Words words = {"import", m_syx, m_mid};
        words.insert(words.end(), more.begin(), more.end());
        return RunTarvixCli(words);
    }

    CMmt8Memory Written() const
    {
        CMmt8Memory memory;
        LoadDump(memory, m_out);
        return memory;
    }

    TempDir m_folder;
    std::string m_syx;
    std::string m_mid = m_folder.File("song.mid");
    std::string m_out = m_folder.File("out.syx");
};

TEST_F(CliImportTest, OnePartTakesTheWholeFile)
{
    const CliResult result = Import({"--part", "4", "-o", m_out});
    ASSERT_EQ(result.exitCode, 0) << Describe(result);
    EXPECT_EQ(result.out + result.err, "");
    const CMmt8Memory memory = Written();
    const CMmt8Part& part = memory.Part(4);
    EXPECT_EQ(part.name, "Song");
    EXPECT_EQ(part.beats, 5u); // the program change at 464
    EXPECT_EQ(part.tracks[0].channel, 3);
    ASSERT_EQ(part.tracks[0].events.size(), 2u); // All Notes Off is dropped
    EXPECT_EQ(static_cast<const CMmt8NoteEvent&>(*part.tracks[0].events[0]).duration, 96);
    EXPECT_EQ(memory.Song(1).name, "");
}

TEST_F(CliImportTest, ASongsPartsTakeOneMarkerEachAndTheSongItsNameAndTempo)
{
    ASSERT_EQ(Import({"--song", "1", "-o", m_out}).exitCode, 0);
    CMmt8Memory memory = Written();
    EXPECT_EQ(memory.Part(4).name, "One");
    EXPECT_EQ(memory.Part(4).tracks[0].events.size(), 1u);
    EXPECT_EQ(memory.Part(6).name, "Two");
    EXPECT_EQ(memory.Part(6).tracks[0].events.size(), 1u);
    EXPECT_TRUE(memory.Part(6).tracks[7].events.empty()); // a song masks every track
    EXPECT_EQ(memory.Song(1).name, "Song");
    EXPECT_EQ(memory.Song(1).tempo, 90);

    ASSERT_EQ(Import({"--song", "1", "--no-markers", "-o", m_out}).exitCode, 0);
    memory = Written();
    EXPECT_EQ(memory.Part(4).tracks[0].events.size(), 2u);
    EXPECT_EQ(memory.Part(6).name, "");
    EXPECT_EQ(memory.Part(6).tracks[7].events.size(), 1u);
}

TEST_F(CliImportTest, ListPrintsTheDialogRowsAndWritesNothing)
{
    CliResult result = Import({"--part", "4", "--tracks", "3,6", "--list", "-o", m_out});
    ASSERT_EQ(result.exitCode, 0) << Describe(result);
    EXPECT_EQ(result.out, "  \tMIDI Track\tMMT8 Track\tMIDI Events\n"
                          "[ ]\tSong\t\t5\n"
                          "[x]\tTrack 2\tTrack 3\t6\n");
    EXPECT_FALSE(std::filesystem::exists(m_out));

    result = Import({"--parts", "1,2", "--midi-tracks", "1,2", "--list"});
    ASSERT_EQ(result.exitCode, 0) << Describe(result);
    EXPECT_EQ(Lines(result.out).at(1), "[x]\tSong\tTrack 1\t5");
    EXPECT_EQ(Lines(result.out).at(2), "[x]\tTrack 2\tTrack 2\t6");
}

TEST_F(CliImportTest, NothingToImportIntoIsTheProgramsMessage)
{
    CliResult result = Import({"--part", "4", "--tracks", "", "-o", m_out});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "No tracks selected.\n");
    result = Import({"--song", "2", "-o", m_out});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "No parts selected.\n");
    EXPECT_FALSE(std::filesystem::exists(m_out));
}

TEST_F(CliImportTest, AnUnreadableMidiFileChangesNothing)
{
    std::filesystem::remove(m_mid);
    const CliResult result = Import({"--part", "4", "-o", m_out});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, FileMessage("open", m_mid, ENOENT));
    EXPECT_FALSE(std::filesystem::exists(m_out));
}

TEST_F(CliImportTest, BadSelectionsAreUsageErrors)
{
    const std::vector<std::pair<Words, std::string>> cases = {
        {{"-o", "@OUT"}, "selection is required"},
        {{"--part", "4", "--song", "1", "-o", "@OUT"}, "only one selection"},
        {{"--tracks", "3", "--parts", "4", "-o", "@OUT"}, "--part"},
        {{"--part", "100", "-o", "@OUT"}, "'100'"},
        {{"--part", "4", "--tracks", "3,9", "-o", "@OUT"}, "track '9'"},
        {{"--parts", "1,,2", "-o", "@OUT"}, "part ''"},
        {{"--steps", "1", "-o", "@OUT"}, "SONG:"},
        {{"--steps", "1:3", "-o", "@OUT"}, "step '3'"},
        {{"--part", "4", "--midi-tracks", "3", "-o", "@OUT"}, "MIDI track '3'"},
        {{"--part", "4"}, "'-o'"},
    };
    for (const auto& [words, mentions] : cases) {
        Words filled = words;
        for (std::string& word : filled)
            word = word == "@OUT" ? m_out : word;
        const CliResult result = Import(filled);
        EXPECT_EQ(result.exitCode, 2) << mentions << ": " << Describe(result);
        EXPECT_NE(result.err.find(mentions), std::string::npos) << result.err;
        EXPECT_NE(result.err.find("Usage: tarvix-cli import"), std::string::npos);
    }
    EXPECT_FALSE(std::filesystem::exists(m_out));
}

// 9,100 notes, each at its own clock, take 63,700 bytes: with what the
// document holds already, more than the device's 64,256.
TEST_F(CliImportTest, AResultTooLargeForTheDeviceIsWrittenOnlyWhenAllowed)
{
    Bytes events = {0x00, 0x90, 60, 100};
    for (int i = 1; i < 9100; ++i)
        events.insert(events.end(), {0x06, 60, 100});
    Bytes file = {'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 0, 0, 1, 0, 96};
    const Bytes track = TrackChunk(events);
    file.insert(file.end(), track.begin(), track.end());
    WriteAllBytes(m_mid, file);

    CliResult result = Import({"--part", "4", "-o", m_out});
    EXPECT_EQ(result.exitCode, 1) << Describe(result);
    EXPECT_EQ(result.err.rfind("After this import the memory would use ", 0), 0u) << result.err;
    EXPECT_NE(result.err.find(" more than the Alesis MMT8 can hold (64256)"), std::string::npos);
    EXPECT_TRUE(
        result.err.ends_with("Nothing was written; --allow-over-capacity writes it anyway.\n"))
        << result.err;
    EXPECT_FALSE(std::filesystem::exists(m_out));

    result = Import({"--part", "4", "--allow-over-capacity", "-o", m_out});
    ASSERT_EQ(result.exitCode, 0) << Describe(result);
    const CMmt8Memory memory = Written();
    EXPECT_EQ(memory.Part(4).tracks[0].events.size(), 9100u);
    EXPECT_GT(memory.GetMemorySize(), kMmt8MemoryCapacity);
}

} // namespace
} // namespace tarvix::testing
