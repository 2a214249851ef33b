#include "io/FileStream.h"

#include "FileTestSupport.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#ifndef _WIN32
#include <sys/resource.h>
#endif

namespace tarvix {
namespace {

using testing::FileMessage;
using testing::FolderEntries;
using Bytes = std::vector<std::uint8_t>;

bool Replace(const std::string& path, const std::string& text, std::string& error)
{
    return WriteFileReplacing(path, text.data(), static_cast<std::uint32_t>(text.size()), error);
}

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

#ifndef _WIN32
// Windows has no per-process file size limit to make a write fail part way.
TEST(FileReplacerTest, FailedWriteKeepsTheOldFileByteForByte)
{
    testing::TempDir dir;
    const std::string path = dir.File("song.syx");
    const Bytes old = {0xF0, 1, 2, 3, 4, 5, 6, 0xF7};
    testing::WriteAllBytes(path, old);

    // A file size limit makes the write of the new bytes fail part way.
    rlimit saved{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = saved;
    small.rlim_cur = 4;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    std::string error;
    const bool replaced = Replace(path, std::string(100, 'x'), error);
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previousHandler);

    EXPECT_FALSE(replaced);
    EXPECT_EQ(error.rfind("Can't write file \"" + path + "\": ", 0), 0u) << error;
    EXPECT_TRUE(error.ends_with(std::string("\": ") + std::strerror(EFBIG) + "\n")) << error;
    EXPECT_EQ(testing::ReadAllBytes(path), old);
    EXPECT_EQ(FolderEntries(dir.Path()), std::set<std::string>{"song.syx"});
}
#endif

} // namespace
} // namespace tarvix
