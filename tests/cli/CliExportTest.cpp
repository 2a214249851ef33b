// tarvix-cli export: parts and songs into a Standard MIDI File, as the
// editor exports them.
#include "CliDocuments.h"
#include "CliRunner.h"

#include "demo/DemoDocument.h"
#include "midifile/MidiExport.h"
#include "model/Mmt8Memory.h"
#include "support/FileTestSupport.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <set>

namespace tarvix::testing {
namespace {

using Words = std::vector<std::string>;
using Kind = MidiSelectionKind;

class CliExportTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        CMmt8Memory demo;
        demo::BuildDemoDocument(demo);
        m_syx = SaveDump(demo, m_folder, "demo.syx");
        LoadDump(m_memory, m_syx); // the document as the program reads it
    }

    CliResult Export(const Words& selection) const
    {
        Words words = {"export", m_syx, "-o", m_mid};
        words.insert(words.end(), selection.begin(), selection.end());
        return RunTarvixCli(words);
    }

    const TempDir m_folder;
    const std::string m_mid = m_folder.File("out.mid");
    std::string m_syx;
    CMmt8Memory m_memory;
};

TEST_F(CliExportTest, EverySelectionWritesWhatTheEditorWould)
{
    const std::pair<Words, MidiSelection> cases[] = {
        {{"--all-parts"}, {Kind::AllParts, 0, {}}},
        {{"--part", "2"}, {Kind::Part, 2, {}}},
        {{"--part", "02", "--tracks", "3,1"}, {Kind::PartTracks, 2, {2, 0}}},
        {{"--parts", "3,1"}, {Kind::Parts, 0, {3, 1}}},
        {{"--all-songs"}, {Kind::AllSongs, 0, {}}},
        {{"--song", "1"}, {Kind::Song, 1, {}}},
        {{"--songs", "1,0"}, {Kind::Songs, 0, {1, 0}}},
        {{"--steps", "0:6,2"}, {Kind::Steps, 0, {5, 1}}},
    };
    const std::string expected = m_folder.File("expected.mid");
    std::set<std::vector<std::uint8_t>> files;
    for (const auto& [words, selection] : cases) {
        SCOPED_TRACE(words.front());
        std::string error;
        ASSERT_TRUE(RunExport(m_memory, selection, expected, error)) << error;
        const CliResult result = Export(words);
        EXPECT_EQ(result.exitCode, 0) << Describe(result);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(ReadAllBytes(m_mid), ReadAllBytes(expected));
        files.insert(ReadAllBytes(expected));
    }
    EXPECT_EQ(files.size(), std::size(cases)); // each selection made its own file
}

TEST_F(CliExportTest, TheTempoOptionSetsTheFilesTempo)
{
    MidiExportOptions options;
    options.tempo = 90;
    const std::string expected = m_folder.File("expected.mid");
    for (const Words& words : {Words{"--part", "2"}, Words{"--song", "1"}}) {
        const MidiSelection selection = words[0] == "--part" ? MidiSelection{Kind::Part, 2, {}}
                                                             : MidiSelection{Kind::Song, 1, {}};
        std::string error;
        ASSERT_TRUE(RunExport(m_memory, selection, expected, error, options)) << error;
        // A long option takes its value from the next word or after "=".
        for (const Words& tempo : {Words{"--tempo", "90"}, Words{"--tempo=90"}}) {
            Words withTempo = words;
            withTempo.insert(withTempo.end(), tempo.begin(), tempo.end());
            std::filesystem::remove(m_mid);
            const CliResult result = Export(withTempo);
            EXPECT_EQ(result.exitCode, 0) << Describe(result);
            EXPECT_EQ(ReadAllBytes(m_mid), ReadAllBytes(expected)) << tempo[0];
        }
    }
    for (const std::string tempo : {"19", "256", "fast", ""}) {
        for (const Words& words :
             {Words{"--part", "2", "--tempo", tempo}, Words{"--part=2", "--tempo=" + tempo}}) {
            const CliResult result = Export(words);
            EXPECT_EQ(result.exitCode, 2) << Describe(result);
            EXPECT_NE(result.err.find("invalid tempo"), std::string::npos) << result.err;
        }
    }
}

TEST_F(CliExportTest, NothingToExportWritesNothing)
{
    for (const auto& [words, message] :
         {std::pair<Words, const char*>{{"--part", "50"}, kNothingToExportParts},
          {{"--parts", ""}, kNothingToExportParts},
          {{"--part", "0", "--tracks", ""}, kNoTracksToExport},
          {{"--song", "9"}, kNothingToExportSongs}}) {
        const CliResult result = Export(words);
        EXPECT_EQ(result.exitCode, 1) << Describe(result);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, message);
        EXPECT_FALSE(std::filesystem::exists(m_mid));
    }
}

TEST_F(CliExportTest, AFileThatCannotBeWrittenIsReported)
{
    const std::string path = m_folder.File("missing/out.mid");
    const CliResult result = RunTarvixCli({"export", m_syx, "-o", path, "--part", "0"});
    EXPECT_EQ(result.exitCode, 1) << Describe(result);
    EXPECT_EQ(result.err, FileMessage("write", path, ENOENT));

    const std::string syx = m_folder.File("missing.syx");
    EXPECT_EQ(RunTarvixCli({"export", syx, "-o", m_mid, "--part", "0"}).exitCode, 1);
    EXPECT_FALSE(std::filesystem::exists(m_mid));
}

TEST_F(CliExportTest, ABadSelectionIsAUsageError)
{
    for (const Words& words :
         {Words{}, Words{"--part", "1", "--song", "1"}, Words{"--tracks", "1"},
          Words{"--part", "100"}, Words{"--part", "1", "--tracks", "9"}, Words{"--songs", "1,x"},
          Words{"--steps", "1"}, Words{"--steps", "1:5"}}) {
        const CliResult result = Export(words);
        EXPECT_EQ(result.exitCode, 2) << Describe(result);
        EXPECT_EQ(result.err.rfind("tarvix-cli export: ", 0), 0u) << result.err;
        EXPECT_FALSE(std::filesystem::exists(m_mid));
    }
}

} // namespace
} // namespace tarvix::testing
