#include "io/FileStream.h"

#include "support/FileTestSupport.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <limits>

namespace tarvix {
namespace {

using platform::FileAccess;
using platform::FileDisposition;
using platform::FileShare;
using testing::FileMessage;
namespace expected = testing::expected;

TEST(FileStreamTest, OpenFailuresReportTheSystemTextOnOneLine)
{
    testing::TempDir dir;
    const std::string path = dir.File("missing.syx");
    CFileStream file;
    std::string error;
    EXPECT_FALSE(
        file.Open(path, error, FileAccess::Read, FileShare::Read, FileDisposition::OpenExisting));
    EXPECT_EQ(error, FileMessage("open", path, expected::kMissingFile));
    EXPECT_EQ(std::count(error.begin(), error.end(), '\n'), 1);
    EXPECT_EQ(std::count(error.begin(), error.end(), '\r'), 0);
    EXPECT_EQ(file.GetLastError(), static_cast<platform::ErrorCode>(expected::kMissingFile));
    EXPECT_EQ(file.GetErrorText(), testing::SystemText(expected::kMissingFile));
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(file.GetFileName(), "");

    // A folder is no file.
    EXPECT_FALSE(file.Open(dir.Path().string(), error, FileAccess::Read, FileShare::Read,
                           FileDisposition::OpenExisting));
    EXPECT_EQ(error, FileMessage("open", dir.Path().string(), expected::kFolderAsFile));
}

TEST(FileStreamTest, WriteThenReadWithShortReadAtTheEnd)
{
    testing::TempDir dir;
    const std::string path = dir.File("data.bin");
    CFileStream file;
    std::string error;
    ASSERT_TRUE(
        file.Open(path, error, FileAccess::Write, FileShare::None, FileDisposition::CreateAlways));
    EXPECT_EQ(file.GetFileName(), path);
    std::uint32_t done = 0;
    EXPECT_TRUE(file.Write("hello", 5, error, &done));
    EXPECT_EQ(done, 5u);
    EXPECT_EQ(file.Seek(0, platform::SeekMethod::Current, error), 5u);
    EXPECT_TRUE(file.Flush());
    file.Close();
    file.Close();
    EXPECT_EQ(file.GetFileName(), "");

    ASSERT_TRUE(
        file.Open(path, error, FileAccess::Read, FileShare::Read, FileDisposition::OpenExisting));
    char buffer[10] = {};
    EXPECT_TRUE(file.Read(buffer, sizeof buffer, error, &done));
    EXPECT_EQ(done, 5u);
    EXPECT_EQ(std::string(buffer, 5), "hello");
    EXPECT_TRUE(file.Read(buffer, sizeof buffer, error, &done));
    EXPECT_EQ(done, 0u);
    EXPECT_EQ(file.GetLastError(), 0u);
}

// The host's full device; wine hands a Unix path through to it.
TEST(FileStreamTest, FailedWriteIsTheDiskFullError)
{
    CFileStream full;
    std::string error;
    if (!full.Open("/dev/full", error, FileAccess::Write, FileShare::None,
                   FileDisposition::OpenExisting))
        GTEST_SKIP() << "no /dev/full here: " << error;
    std::uint32_t done = 99;
    EXPECT_FALSE(full.Write("abc", 3, error, &done));
    EXPECT_EQ(done, 0u);
    EXPECT_EQ(full.GetLastError(), platform::kErrorDiskFull);
    EXPECT_EQ(full.GetLastError(), static_cast<platform::ErrorCode>(expected::kDiskFull));
    EXPECT_EQ(error, FileMessage("write", "/dev/full", expected::kDiskFull));
    // Empty transfers never reach the system.
    EXPECT_TRUE(full.Write("abc", 0, error));
}

TEST(FileStreamTest, FailedReadNamesTheFileAndTheCause)
{
    testing::TempDir dir;
    const std::string path = dir.File("out.bin");
    CFileStream file;
    std::string error;
    ASSERT_TRUE(
        file.Open(path, error, FileAccess::Write, FileShare::None, FileDisposition::CreateAlways));
    std::uint32_t done = 99;
    char byte = 0;
    EXPECT_FALSE(file.Read(&byte, 1, error, &done));
    EXPECT_EQ(done, 0u);
    EXPECT_EQ(error, FileMessage("read", path, expected::kReadOnWriteOnly));
}

TEST(FileStreamTest, SeekFailureReturnsAllOnes)
{
    testing::TempDir dir;
    const std::string path = dir.File("sparse.bin");
    CFileStream file;
    std::string error;
    ASSERT_TRUE(
        file.Open(path, error, FileAccess::ReadWrite, FileShare::None, FileDisposition::CreateNew));
    EXPECT_EQ(file.Seek(-1, platform::SeekMethod::Begin, error), 0xFFFFFFFFu);
    EXPECT_EQ(error, FileMessage("seek", path, expected::kNegativeSeek));

    const std::int32_t max = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(file.Seek(max, platform::SeekMethod::Begin, error), 0x7FFFFFFFu);
    EXPECT_EQ(file.Seek(max, platform::SeekMethod::Current, error), 0xFFFFFFFEu);
    // The next position no longer fits the 32-bit result.
    error.clear();
    EXPECT_EQ(file.Seek(1, platform::SeekMethod::Current, error), CFileStream::kSeekFailed);
    EXPECT_EQ(error, FileMessage("seek", path, expected::kPositionTooLarge));
    EXPECT_TRUE(file.Sync());
}

TEST(MappedFileStreamTest, EmptyFileCannotBeMapped)
{
    testing::TempDir dir;
    const std::string path = dir.File("empty.syx");
    testing::WriteAllBytes(path, {});
    CMappedFileStream file;
    std::string error;
    EXPECT_FALSE(
        file.Open(path, error, FileAccess::Read, FileShare::Read, FileDisposition::OpenExisting));
    EXPECT_EQ(error, FileMessage("open", path, expected::kEmptyFile));
    EXPECT_EQ(file.GetLastError(), platform::kErrorInvalidData);
    EXPECT_EQ(file.GetView(), nullptr);
    EXPECT_EQ(file.GetFileSize(), 0u);
}

TEST(MappedFileStreamTest, ViewHoldsTheFileBytes)
{
    testing::TempDir dir;
    const std::string path = dir.File("dump.syx");
    const std::vector<std::uint8_t> bytes = {0xF0, 0, 0, 0x0E, 0, 0x7F, 0xF7};
    testing::WriteAllBytes(path, bytes);
    CMappedFileStream file;
    std::string error;
    ASSERT_TRUE(
        file.Open(path, error, FileAccess::Read, FileShare::Read, FileDisposition::OpenExisting));
    ASSERT_EQ(file.GetFileSize(), bytes.size());
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), file.GetView()));
    EXPECT_EQ(file.GetLastError(), 0u);
    file.Close();
    EXPECT_EQ(file.GetView(), nullptr);
    EXPECT_EQ(file.GetFileSize(), 0u);
    EXPECT_FALSE(file.IsOpen());
}

TEST(MappedFileStreamTest, WritableViewWritesThrough)
{
    testing::TempDir dir;
    const std::string path = dir.File("edit.bin");
    testing::WriteAllBytes(path, {1, 2, 3});
    {
        CMappedFileStream file;
        std::string error;
        ASSERT_TRUE(file.Open(path, error, FileAccess::ReadWrite, FileShare::None,
                              FileDisposition::OpenExisting));
        const_cast<std::uint8_t*>(file.GetView())[1] = 9;
    }
    EXPECT_EQ(testing::ReadAllBytes(path), (std::vector<std::uint8_t>{1, 9, 3}));

    // Write-only access gives no readable view.
    CMappedFileStream file;
    std::string error;
    EXPECT_FALSE(
        file.Open(path, error, FileAccess::Write, FileShare::None, FileDisposition::OpenExisting));
    EXPECT_EQ(error,
              FileMessage(expected::kWriteOnlyMappingStep, path, expected::kWriteOnlyMapping));
}

} // namespace
} // namespace tarvix
