// What only the Windows file platform does: wide names, the system's own
// texts for the codes the file classes set themselves, and saves that keep
// the replaced file's attributes.
#include "io/FileStream.h"

#include "support/FileTestSupport.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tarvix {
namespace {

using Bytes = std::vector<std::uint8_t>;

bool OneLine(const std::string& text)
{
    return !text.empty() && text.find_first_of("\r\n") == std::string::npos;
}

TEST(WinFileTest, CodesSetByTheFileClassesCarryTheSystemTextOnOneLine)
{
    CFileStream file;
    for (const platform::ErrorCode code :
         {platform::kErrorInvalidData, platform::kErrorDiskFull, platform::ErrorCode{0}}) {
        file.SetError(code);
        EXPECT_EQ(file.GetLastError(), code);
        EXPECT_TRUE(OneLine(file.GetErrorText())) << code << ": " << file.GetErrorText();
        EXPECT_EQ(file.GetErrorText(), testing::SystemText(static_cast<int>(code)));
    }
    EXPECT_EQ(platform::kErrorInvalidData, 13u);
    EXPECT_EQ(platform::kErrorDiskFull, 112u);
}

TEST(WinFileTest, NamesOutsideTheCodePageReachTheDisk)
{
    testing::TempDir dir;
    // UTF-8, as every name in the program: a Euro sign, a note and a Greek word.
    const std::string name = "\xE2\x82\xAC \xE2\x99\xAA \xCE\xB1\xCE\xB2.syx";
    const std::string path = dir.File(name);
    std::string error;
    ASSERT_TRUE(WriteFileReplacing(path, "\xF0\xF7", 2, error)) << error;

    const auto entries = testing::FolderEntries(dir.Path());
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(std::filesystem::directory_iterator(dir.Path())->path().filename().wstring(),
              L"\u20AC \u266A \u03B1\u03B2.syx");

    CMappedFileStream mapped;
    ASSERT_TRUE(mapped.Open(path, error, platform::FileAccess::Read, platform::FileShare::Read,
                            platform::FileDisposition::OpenExisting))
        << error;
    EXPECT_EQ(Bytes(mapped.GetView(), mapped.GetView() + mapped.GetFileSize()),
              (Bytes{0xF0, 0xF7}));
}

TEST(WinFileTest, SaveKeepsTheReplacedFilesAttributes)
{
    testing::TempDir dir;
    const std::string path = dir.File("hidden.syx");
    testing::WriteAllBytes(path, {1, 2, 3});
    const std::wstring wide = std::filesystem::path(path).wstring();
    ASSERT_TRUE(::SetFileAttributesW(wide.c_str(), FILE_ATTRIBUTE_HIDDEN));
    ASSERT_NE(::GetFileAttributesW(wide.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);

    std::string error;
    ASSERT_TRUE(WriteFileReplacing(path, "new", 3, error)) << error;
    EXPECT_EQ(testing::ReadAllBytes(path), (Bytes{'n', 'e', 'w'}));
    EXPECT_NE(::GetFileAttributesW(wide.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
    EXPECT_EQ(testing::FolderEntries(dir.Path()), std::set<std::string>{"hidden.syx"});
}

TEST(WinFileTest, OpenFileIsSharedOnlyAsAsked)
{
    testing::TempDir dir;
    const std::string path = dir.File("locked.syx");
    testing::WriteAllBytes(path, {1});
    CFileStream writer;
    std::string error;
    ASSERT_TRUE(writer.Open(path, error, platform::FileAccess::Write, platform::FileShare::None,
                            platform::FileDisposition::OpenExisting));
    CFileStream reader;
    EXPECT_FALSE(reader.Open(path, error, platform::FileAccess::Read, platform::FileShare::Read,
                             platform::FileDisposition::OpenExisting));
    EXPECT_EQ(reader.GetLastError(), static_cast<platform::ErrorCode>(ERROR_SHARING_VIOLATION));
    EXPECT_EQ(error, testing::FileMessage("open", path, ERROR_SHARING_VIOLATION));
}

} // namespace
} // namespace tarvix
