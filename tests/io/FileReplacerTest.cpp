// Saves that never destroy the file they replace, on every system.
#include "io/FileStream.h"

#include "support/FileTestSupport.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace tarvix {
namespace {

using testing::FileMessage;
using testing::FolderEntries;
using testing::Replace;
using Bytes = std::vector<std::uint8_t>;

TEST(FileReplacerTest, ReplacesOrCreatesAndLeavesNoTemporaryFile)
{
    testing::TempDir dir;
    const std::string path = dir.File("song.syx");
    testing::WriteAllBytes(path, Bytes(1000, 0x55));
    std::string error;
    ASSERT_TRUE(Replace(path, "new", error)) << error;
    EXPECT_EQ(testing::ReadAllBytes(path), (Bytes{'n', 'e', 'w'}));

    const std::string created = dir.File("created.syx");
    ASSERT_TRUE(Replace(created, "", error)) << error;
    EXPECT_TRUE(testing::ReadAllBytes(created).empty());
    EXPECT_EQ(FolderEntries(dir.Path()), (std::set<std::string>{"song.syx", "created.syx"}));
}

TEST(FileReplacerTest, MissingFolderFailsWithTheSystemText)
{
    testing::TempDir dir;
    const std::string path = dir.File("gone/song.syx");
    std::string error;
    EXPECT_FALSE(Replace(path, "data", error));
    EXPECT_EQ(error, FileMessage("write", path, testing::expected::kMissingFolder));
    EXPECT_TRUE(FolderEntries(dir.Path()).empty());
}

TEST(FileReplacerTest, FailedRenameKeepsTheTarget)
{
    testing::TempDir dir;
    const std::string path = dir.File("folder");
    std::filesystem::create_directory(path);
    testing::WriteAllBytes(dir.File("folder/inside"), {1, 2});
    std::string error;
    EXPECT_FALSE(Replace(path, "data", error));
    EXPECT_EQ(error, FileMessage("write", path, testing::expected::kFolderAsFile));
    EXPECT_EQ(FolderEntries(dir.Path()), std::set<std::string>{"folder"});
    EXPECT_EQ(testing::ReadAllBytes(dir.File("folder/inside")), (Bytes{1, 2}));
}

} // namespace
} // namespace tarvix
