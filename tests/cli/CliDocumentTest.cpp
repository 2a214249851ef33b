// The commands that print a document: the built program on real files.
#include "CliDocuments.h"
#include "CliRunner.h"

#include "demo/DemoDocument.h"
#include "model/Mmt8Memory.h"
#include "model/TrackListing.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tarvix::testing {

namespace {
using Words = std::vector<std::string>;

std::string Row(const std::string& label, const std::string& name, const std::string& third,
                std::uint32_t fourth)
{
    return label + "\t" + name + "\t" + third + "\t" + std::to_string(fourth);
}

// Runs a command that must succeed quietly and returns its stdout.
std::string Printed(const Words& words)
{
    const CliResult result = RunTarvixCli(words);
    EXPECT_EQ(result.exitCode, 0) << Describe(result);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out.find('\r'), std::string::npos) << "CR in the output";
    return result.out;
}

class CliDocumentTest : public ::testing::Test {
protected:
    CliDocumentTest()
    {
        demo::BuildDemoDocument(m_demo);
        m_path = SaveDump(m_demo, m_folder, "demo.syx");
    }

    TempDir m_folder;
    CMmt8Memory m_demo;
    std::string m_path;
};
} // namespace

TEST(CliMemoryTest, ReportsTheFreeShareOrTheExcess)
{
    struct Case {
        std::uint32_t size;
        const char* expected;
    };
    const Case cases[] = {
        {64256, "Memory available: 0%\n"},
        {64257, "Size 64257 bytes, exceeds Alesis MMT8 memory capacity by 1 bytes\n"},
        {64300, "Size 64300 bytes, exceeds Alesis MMT8 memory capacity by 44 bytes\n"},
    };
    const TempDir folder;
    for (const Case& c : cases) {
        CMmt8Memory memory;
        BuildDocumentOfSize(memory, c.size);
        ASSERT_EQ(memory.GetMemorySize(), c.size);
        const std::string path = SaveDump(memory, folder, std::to_string(c.size) + ".syx");
        EXPECT_EQ(Printed({"memory", path}), c.expected) << "size " << c.size;
    }
}

TEST(CliMemoryTest, ReportsADocumentNoDumpCouldCarry)
{
    const TempDir folder;
    CMmt8Memory memory;
    BuildDocumentOfSize(memory, 64300);
    const std::string path = folder.File("shared.syx");
    WriteAllBytes(path, DumpSharingPartZero(memory));
    const std::uint32_t size = 512 + kPartCount * memory.GetPartSize(0) + 18;
    EXPECT_EQ(Printed({"memory", path}), "Size " + std::to_string(size) +
                                             " bytes, exceeds Alesis MMT8 memory capacity by " +
                                             std::to_string(size - 64256) + " bytes\n");
}

TEST(CliMemoryTest, ABlankMemoryIsAllAvailable)
{
    const TempDir folder;
    const std::string path = folder.File("blank.syx");
    Printed({"new", "-o", path});
    EXPECT_EQ(Printed({"memory", path}), "Memory available: 100%\n");
}

TEST_F(CliDocumentTest, MemoryOfTheDemo)
{
    // (64256 - 1256) x 100 / 63726, truncated.
    ASSERT_EQ(m_demo.GetMemorySize(), 1256u);
    EXPECT_EQ(Printed({"memory", m_path}), "Memory available: 98%\n");
}

// The cells' texts are the list's (ListCellsTest); here the commands print
// every row under the header, tab-separated, from the file they read.
TEST_F(CliDocumentTest, PartsAndSongsListAHundredRows)
{
    const auto parts = Lines(Printed({"parts", m_path}));
    ASSERT_EQ(parts.size(), 101u);
    EXPECT_EQ(parts[0], "##\tPart name\tNumber of beats\tSize in bytes");
    EXPECT_EQ(parts[1], Row(" 00", "DRUMS 4/4", "4", m_demo.GetPartSize(0)));
    // Empty parts show no beats but still the size of an empty record.
    EXPECT_EQ(parts[100], Row(" 99", "", "", m_demo.GetPartSize(99)));
    EXPECT_EQ(m_demo.GetPartSize(0), 174u);

    const auto songs = Lines(Printed({"songs", m_path}));
    ASSERT_EQ(songs.size(), 101u);
    EXPECT_EQ(songs[0], "##\tSong name\tBeats per minute\tSize in bytes");
    EXPECT_EQ(songs[2], Row(" 01", "JAM", "128", m_demo.GetSongSize(1)));
    EXPECT_EQ(songs[100], Row(" 99", "", "", m_demo.GetSongSize(99)));
}

TEST_F(CliDocumentTest, TracksListsTheEightTracksOfAPart)
{
    const auto lines = Lines(Printed({"tracks", m_path, "0"}));
    ASSERT_EQ(lines.size(), 9u);
    EXPECT_EQ(lines[0], "##\tMidi channel\tNumber of events\tSize in bytes");
    EXPECT_EQ(lines[1], Row(" 01", "10", "12", m_demo.GetTrackSize(0, 0)));
    for (int track = 1; track < 8; ++track)
        EXPECT_EQ(lines[std::size_t(track) + 1], Row(" 0" + std::to_string(track + 1), "Unchanged",
                                                     "0", m_demo.GetTrackSize(0, track)));

    const auto fill = Lines(Printed({"tracks", m_path, "3"}));
    ASSERT_EQ(fill.size(), 9u);
    EXPECT_EQ(fill[4], Row(" 04", "5", "13", m_demo.GetTrackSize(3, 3)));
}

TEST_F(CliDocumentTest, StepsListsOneRowPerStep)
{
    EXPECT_EQ(Printed({"steps", m_path, "0"}), "##\tPart name\tNumber of beats\tTracks enabled\n"
                                               " 00\tDRUMS 4/4\t4\tAll\n"
                                               " 00\tDRUMS 4/4\t4\tAll\n"
                                               " 01\tBASS LINE\t4\t1 2 \n"
                                               " 01\tBASS LINE\t4\tAll\n"
                                               " 02\tCHORDS\t8\tAll\n"
                                               " 03\tFILL + FX\t4\t1 2 3 4 \n");
    EXPECT_EQ(Printed({"steps", m_path, "1"}), "##\tPart name\tNumber of beats\tTracks enabled\n"
                                               " 00\tDRUMS 4/4\t4\tAll\n"
                                               " 01\tBASS LINE\t4\tAll\n"
                                               " 02\tCHORDS\t8\t3 \n"
                                               " 02\tCHORDS\t8\tAll\n");
    EXPECT_EQ(Printed({"steps", m_path, "2"}), "##\tPart name\tNumber of beats\tTracks enabled\n");
}

TEST_F(CliDocumentTest, NumbersTakeALeadingZero)
{
    EXPECT_EQ(Printed({"tracks", m_path, "03"}), Printed({"tracks", m_path, "3"}));
    EXPECT_EQ(Printed({"steps", m_path, "01"}), Printed({"steps", m_path, "1"}));
    EXPECT_EQ(Printed({"list", m_path, "03", "4"}), Printed({"list", m_path, "3", "4"}));

    const auto empty = Lines(Printed({"tracks", m_path, "05"}));
    ASSERT_EQ(empty.size(), 9u);
    EXPECT_EQ(empty[8], Row(" 08", "Unchanged", "0", m_demo.GetTrackSize(5, 7)));
    EXPECT_EQ(Printed({"tracks", m_path, "5"}), Printed({"tracks", m_path, "05"}));
}

// The listing is the track dump view's text (TrackListingTest) with LF line
// ends, of the track the numbers name, as read from the file.
TEST_F(CliDocumentTest, ListPrintsTheDumpOfTheTrackItNames)
{
    for (const auto& [part, track] : {std::pair{3, 4}, {1, 2}, {0, 8}, {99, 1}}) {
        SCOPED_TRACE(std::to_string(part) + " " + std::to_string(track));
        EXPECT_EQ(
            Printed({"list", m_path, std::to_string(part), std::to_string(track)}),
            ListTrack(m_demo.Part(part).tracks[static_cast<std::size_t>(track - 1)], LineEnds::Lf));
    }
}

// Names come from the file, and a file may put any byte in them.
TEST(CliNameTest, ControlCharactersInNamesKeepRowsAndCells)
{
    const TempDir folder;
    CMmt8Memory memory;
    memory.SetPartBeats(7, 4);
    memory.SetPartName(7, "KICK\tSNARE");
    memory.AppendStep(7, 7, 0xFF);
    memory.SetSongName(7, "VERSE\nCHORUS");
    const std::string path = SaveDump(memory, folder, "names.syx");
    const std::pair<Words, std::size_t> cases[] = {
        {{"parts", path}, 101}, {{"songs", path}, 101}, {{"steps", path, "7"}, 2}};
    for (const auto& [words, lineCount] : cases) {
        const auto lines = Lines(Printed(words));
        EXPECT_EQ(lines.size(), lineCount) << words[0];
        for (const std::string& line : lines)
            EXPECT_EQ(std::count(line.begin(), line.end(), '\t'), 3) << words[0] << ": " << line;
    }
}

} // namespace tarvix::testing
