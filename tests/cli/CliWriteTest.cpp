// new and rewrite: the files they write load back to the document meant.
#include "CliDocuments.h"
#include "CliRunner.h"

#include "model/Mmt8Memory.h"
#include "support/FileTestSupport.h"
#include "support/RandomDocument.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>

namespace tarvix::testing {

namespace {
using Bytes = std::vector<std::uint8_t>;

// A message of another maker, which a reader skips once a dump has loaded.
const Bytes kForeignMessage = {0xF0, 0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7};

Bytes Joined(std::initializer_list<Bytes> pieces)
{
    Bytes all;
    for (const Bytes& piece : pieces)
        all.insert(all.end(), piece.begin(), piece.end());
    return all;
}

void ExpectQuietSuccess(const CliResult& result)
{
    EXPECT_EQ(result.exitCode, 0) << Describe(result);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
}
} // namespace

TEST(CliNewTest, WritesTheBlankMemory)
{
    const TempDir folder;
    const std::string path = folder.File("blank.syx");
    WriteAllBytes(path, {0xF0, 0xF7}); // replaced, not appended to
    ExpectQuietSuccess(RunTarvixCli({"new", "-o", path}));
    EXPECT_EQ(ReadAllBytes(path), DumpOf(CMmt8Memory{}));
}

// The input holds an older dump, then the document, then a foreign message:
// the last dump wins and only it is written back.
// -o goes through the program's one save: a link is followed and kept, the
// file it names keeps its mode.
TEST(CliNewTest, WritesThroughALinkKeepingTheFilesMode)
{
    const TempDir folder;
    const std::string real = folder.File("real.syx");
    WriteAllBytes(real, {0xF0, 0xF7});
    ASSERT_EQ(::chmod(real.c_str(), 0600), 0);
    std::filesystem::create_symlink("real.syx", folder.File("link.syx"));
    ExpectQuietSuccess(RunTarvixCli({"new", "-o", folder.File("link.syx")}));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.File("link.syx")));
    EXPECT_GT(ReadAllBytes(real).size(), 2u);
    EXPECT_EQ(std::filesystem::status(real).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST(CliRewriteTest, KeepsTheDocumentAndSettlesOnOneLayout)
{
    const TempDir folder;
    for (unsigned seed = 1; seed <= 6; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        CMmt8Memory older;
        CMmt8Memory document;
        FillRandomDocument(older, random);
        FillRandomDocument(document, random);
        const std::string input = folder.File("in.syx");
        const std::string first = folder.File("first.syx");
        const std::string second = folder.File("second.syx");
        WriteAllBytes(input, Joined({DumpOf(older), DumpOf(document), kForeignMessage}));

        ExpectQuietSuccess(RunTarvixCli({"rewrite", input, "-o", first}));
        CMmt8Memory loaded;
        LoadDump(loaded, first);
        EXPECT_EQ(DescribeDifference(document, loaded), "");
        EXPECT_EQ(ReadAllBytes(first), DumpOf(document));

        ExpectQuietSuccess(RunTarvixCli({"rewrite", first, "-o", second}));
        EXPECT_EQ(ReadAllBytes(second), ReadAllBytes(first));
    }
}

TEST(CliRewriteTest, CanReplaceItsOwnInput)
{
    const TempDir folder;
    const std::string path = folder.File("demo.syx");
    WriteAllBytes(path, Joined({DemoDump(), kForeignMessage}));

    ExpectQuietSuccess(RunTarvixCli({"rewrite", path, "-o", path}));
    EXPECT_EQ(ReadAllBytes(path), DemoDump());
    EXPECT_EQ(FolderEntries(folder.Path()), std::set<std::string>{"demo.syx"});
}

TEST(CliRewriteTest, KeepsADocumentOverTheCapacity)
{
    // Over the device's capacity but still addressable: saved all the same.
    const TempDir folder;
    CMmt8Memory big;
    BuildDocumentOfSize(big, 64300);
    const std::string input = SaveDump(big, folder, "big.syx");
    const std::string output = folder.File("out.syx");
    ExpectQuietSuccess(RunTarvixCli({"rewrite", input, "-o", output}));
    EXPECT_EQ(ReadAllBytes(output), ReadAllBytes(input));
}

} // namespace tarvix::testing
