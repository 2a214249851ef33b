// Saves on POSIX: file size limits, symbolic links, permission bits, owners
// and folders that take no new file.
#include "io/FileStream.h"

#include "support/FileTestSupport.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvix {
namespace {

using testing::FileMessage;
using testing::FolderEntries;
using testing::Replace;
using Bytes = std::vector<std::uint8_t>;

mode_t ModeOf(const std::string& path)
{
    struct stat info {};
    EXPECT_EQ(::lstat(path.c_str(), &info), 0) << path;
    return info.st_mode;
}

// Holds RLIMIT_FSIZE at limit bytes (a write beyond fails with EFBIG instead
// of a signal) for as long as it lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t limit) : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_saved);
        rlimit small = m_saved;
        small.rlim_cur = limit;
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_saved);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_saved{};
    void (*m_handler)(int);
};

// The user nobody, whom no folder of ours lets in: root ignores a folder's
// missing write permission, so a save as root would never meet it.
constexpr uid_t kUnprivilegedId = 65534;

struct ChildSave {
    bool saved = false;
    std::string error;
};

// Saves "song.syx" in folder from a child process that is not root (it gives
// root up when it has it) and works in the folder by a relative name, so no
// folder above it needs to let that user through.
ChildSave SaveAsUnprivileged(const std::string& folder, const std::string& text,
                             rlim_t fileSizeLimit = RLIM_INFINITY)
{
    int channel[2];
    if (::pipe(channel) != 0)
        return {};
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(channel[0]);
        const bool dropped =
            ::geteuid() != 0 || (::setgroups(0, nullptr) == 0 && ::setgid(kUnprivilegedId) == 0 &&
                                 ::setuid(kUnprivilegedId) == 0);
        if (!dropped || ::chdir(folder.c_str()) != 0)
            ::_exit(2);
        std::string error;
        bool saved = false;
        {
            FileSizeLimit limit(fileSizeLimit);
            saved = Replace("song.syx", text, error);
        }
        (void)!::write(channel[1], error.data(), error.size());
        ::_exit(saved ? 0 : 1);
    }
    ::close(channel[1]);
    ChildSave result;
    char buffer[512];
    for (ssize_t n; (n = ::read(channel[0], buffer, sizeof buffer)) > 0;)
        result.error.append(buffer, static_cast<std::size_t>(n));
    ::close(channel[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) < 2) << "the child could not start";
    result.saved = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return result;
}

// A folder of mode 555 holding song.syx, which the unprivileged user owns
// and may write.
std::string ReadOnlyFolderWithFile(const testing::TempDir& dir, const Bytes& old)
{
    const std::string folder = dir.File("locked");
    std::filesystem::create_directory(folder);
    testing::WriteAllBytes(folder + "/song.syx", old);
    if (::geteuid() == 0) {
        EXPECT_EQ(::chown(folder.c_str(), 0, 0), 0);
        EXPECT_EQ(::chown((folder + "/song.syx").c_str(), kUnprivilegedId, kUnprivilegedId), 0);
    }
    ::chmod((folder + "/song.syx").c_str(), 0644);
    ::chmod(folder.c_str(), 0555);
    return folder;
}

TEST(FileReplacerTest, FailedWriteKeepsTheOldFileByteForByte)
{
    testing::TempDir dir;
    const std::string path = dir.File("song.syx");
    const Bytes old = {0xF0, 1, 2, 3, 4, 5, 6, 0xF7};
    testing::WriteAllBytes(path, old);

    // A file size limit makes the write of the new bytes fail part way.
    std::string error;
    bool replaced = false;
    {
        FileSizeLimit limit(4);
        replaced = Replace(path, std::string(100, 'x'), error);
    }
    EXPECT_FALSE(replaced);
    EXPECT_EQ(error.rfind("Can't write file \"" + path + "\": ", 0), 0u) << error;
    EXPECT_TRUE(error.ends_with(std::string("\": ") + std::strerror(EFBIG) + "\n")) << error;
    EXPECT_EQ(testing::ReadAllBytes(path), old);
    EXPECT_EQ(FolderEntries(dir.Path()), std::set<std::string>{"song.syx"});
}

TEST(FileReplacerTest, SavingThroughALinkUpdatesTheFileItPointsTo)
{
    testing::TempDir dir;
    std::filesystem::create_directory(dir.File("real"));
    const std::string target = dir.File("real/song.syx");
    testing::WriteAllBytes(target, Bytes(10, 1));
    // A relative link to a relative link: both are followed.
    std::filesystem::create_symlink("real/song.syx", dir.File("inner.syx"));
    std::filesystem::create_symlink("inner.syx", dir.File("outer.syx"));

    std::string error;
    ASSERT_TRUE(Replace(dir.File("outer.syx"), "new", error)) << error;
    EXPECT_TRUE(S_ISLNK(ModeOf(dir.File("outer.syx"))));
    EXPECT_TRUE(S_ISLNK(ModeOf(dir.File("inner.syx"))));
    EXPECT_EQ(testing::ReadAllBytes(target), (Bytes{'n', 'e', 'w'}));
    // The temporary file was made beside the target, and is gone.
    EXPECT_EQ(FolderEntries(dir.File("real")), std::set<std::string>{"song.syx"});

    // A link to a file that does not exist yet creates it.
    std::filesystem::create_symlink("real/later.syx", dir.File("dangling.syx"));
    ASSERT_TRUE(Replace(dir.File("dangling.syx"), "x", error)) << error;
    EXPECT_TRUE(S_ISLNK(ModeOf(dir.File("dangling.syx"))));
    EXPECT_EQ(testing::ReadAllBytes(dir.File("real/later.syx")), Bytes{'x'});
}

TEST(FileReplacerTest, KeepsPermissionBitsOwnerAndGroup)
{
    testing::TempDir dir;
    const std::string path = dir.File("private.syx");
    testing::WriteAllBytes(path, Bytes(4, 0));
    ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
    const bool root = ::geteuid() == 0;
    if (root) {
        ASSERT_EQ(::chown(path.c_str(), kUnprivilegedId, kUnprivilegedId), 0);
    }
    struct stat before {};
    ASSERT_EQ(::stat(path.c_str(), &before), 0);

    std::string error;
    ASSERT_TRUE(Replace(path, "data", error)) << error;
    struct stat after {};
    ASSERT_EQ(::stat(path.c_str(), &after), 0);
    EXPECT_EQ(after.st_mode & 07777, 0600u);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);

    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    ASSERT_TRUE(Replace(path, "more", error)) << error;
    EXPECT_EQ(ModeOf(path) & 07777, 0640u);
}

TEST(FileReplacerTest, WritableFileInAReadOnlyFolderIsRewrittenInPlace)
{
    testing::TempDir dir;
    const std::string folder = ReadOnlyFolderWithFile(dir, Bytes(50, 7));
    const auto inode = [&folder] {
        struct stat info {};
        ::stat((folder + "/song.syx").c_str(), &info);
        return info.st_ino;
    };
    const auto before = inode();

    const ChildSave result = SaveAsUnprivileged(folder, "short");
    EXPECT_TRUE(result.saved) << result.error;
    EXPECT_EQ(testing::ReadAllBytes(folder + "/song.syx"), (Bytes{'s', 'h', 'o', 'r', 't'}));
    EXPECT_EQ(inode(), before);
    EXPECT_EQ(ModeOf(folder + "/song.syx") & 07777, 0644u);
    EXPECT_EQ(FolderEntries(folder), std::set<std::string>{"song.syx"});
}

TEST(FileReplacerTest, FailedWriteInPlacePutsTheOldBytesBack)
{
    testing::TempDir dir;
    const Bytes old = {0xF0, 1, 2, 3, 4, 5, 6, 0xF7};
    const std::string folder = ReadOnlyFolderWithFile(dir, old);

    // The new bytes outgrow the file size limit part way; the old ones fit.
    const ChildSave result = SaveAsUnprivileged(folder, std::string(100, 'x'), 16);
    EXPECT_FALSE(result.saved);
    EXPECT_EQ(result.error, FileMessage("write", "song.syx", EFBIG));
    EXPECT_EQ(testing::ReadAllBytes(folder + "/song.syx"), old);
    EXPECT_EQ(FolderEntries(folder), std::set<std::string>{"song.syx"});
}

TEST(FileReplacerTest, ReadOnlyFileInAReadOnlyFolderIsRefused)
{
    testing::TempDir dir;
    const std::string folder = ReadOnlyFolderWithFile(dir, Bytes{1, 2});
    ::chmod((folder + "/song.syx").c_str(), 0444);
    const ChildSave result = SaveAsUnprivileged(folder, "new");
    EXPECT_FALSE(result.saved);
    EXPECT_EQ(result.error, FileMessage("write", "song.syx", EACCES));
    EXPECT_EQ(testing::ReadAllBytes(folder + "/song.syx"), (Bytes{1, 2}));
}

} // namespace
} // namespace tarvix
