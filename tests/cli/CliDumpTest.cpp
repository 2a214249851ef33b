// tarvix-cli dump: the MIDI file dump report on the terminal.
#include "CliRunner.h"

#include "support/FileTestSupport.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>

namespace tarvix::testing {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Format 1, two tracks: a tempo, then a note with running status and SysEx.
const Bytes kSong = {'M',  'T',  'h',  'd',  0,    0,    0,    6,    0,    1,    0,    2,
                     0,    96,   'M',  'T',  'r',  'k',  0,    0,    0,    11,   0x00, 0xFF,
                     0x51, 0x03, 0x07, 0xA1, 0x20, 0x00, 0xFF, 0x2F, 0x00, 'M',  'T',  'r',
                     'k',  0,    0,    0,    17,   0x00, 0x90, 0x3C, 0x64, 0x60, 0x3C, 0x00,
                     0x00, 0xF0, 0x03, 0x43, 0x10, 0xF7, 0x00, 0xFF, 0x2F, 0x00};

TEST(CliDumpTest, PrintsTheReportWithLineFeeds)
{
    const TempDir folder;
    const std::string path = folder.File("song.mid");
    WriteAllBytes(path, kSong);
    const CliResult result = RunTarvixCli({"dump", path});
    ASSERT_EQ(result.exitCode, 0) << Describe(result);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(
        result.out,
        "\nDumping file: " + path +
            "\n\nHeader\n======\nSMF type: 1\nNumber of tracks: 2\nTicks per quarter note: 96\n"
            "\nTrack 1\n========\n"
            "00000000 Meta Event 51   Set tempo: 120 BPM (500000 uSec PQN)\n"
            "00000000 Meta Event 2F   End of track\n"
            "\nTrack 2\n========\n"
            "00000000 Midi 90 3C 64   Note on          C3\n"
            "00000060 Midi 90 3C 00   Note on          C3\n"
            "00000000 Yamaha Sysex 4 bytes\n"
            "00000000 F0 43 10 F7" +
            std::string(37, ' ') + ".C.." + std::string(18, ' ') +
            "\n00000000 Meta Event 2F   End of track\n");
}

TEST(CliDumpTest, AFileThatIsNotMidiGivesAnEmptyReport)
{
    const TempDir folder;
    const std::string path = folder.File("notes.txt");
    WriteAllBytes(path, Bytes{'h', 'e', 'l', 'l', 'o'});
    const CliResult result = RunTarvixCli({"dump", path});
    ASSERT_EQ(result.exitCode, 0) << Describe(result);
    EXPECT_EQ(result.out, "\nDumping file: " + path +
                              "\n\nHeader\n======\nSMF type: 0\nNumber of tracks: 0\n"
                              "Ticks per quarter note: 0\n");
}

TEST(CliDumpTest, AFileThatCannotBeOpenedFails)
{
    const TempDir folder;
    const std::string path = folder.File("missing.mid");
    const CliResult result = RunTarvixCli({"dump", path});
    EXPECT_EQ(result.exitCode, 1) << Describe(result);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, FileMessage("open", path, ENOENT));

    EXPECT_EQ(RunTarvixCli({"dump"}).exitCode, 2);
}

} // namespace
} // namespace tarvix::testing
