#include "io/platform/PlatformFile.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <limits>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvix::platform {

const ErrorCode kErrorDiskFull = ENOSPC;
const ErrorCode kErrorInvalidData = ENODATA;
const ErrorCode kErrorFileExists = EEXIST;
const ErrorCode kErrorOverflow = EOVERFLOW;
const ErrorCode kErrorIsFolder = EISDIR;

namespace {

int Descriptor(FileHandle handle)
{
    return static_cast<int>(handle);
}

ErrorCode Errno()
{
    return static_cast<ErrorCode>(errno);
}

// A call that answers 0 or -1 and errno, made again when a signal
// interrupted it.
template <typename Call> bool Succeeds(Call call, ErrorCode& error)
{
    int result = 0;
    do {
        result = call();
    } while (result < 0 && errno == EINTR);
    error = result < 0 ? Errno() : ErrorCode{};
    return result >= 0;
}

// One system call at most SSIZE_MAX bytes; our counts are 32-bit anyway.
constexpr std::size_t kMaxChunk = std::numeric_limits<std::uint32_t>::max() / 2 + 1;

int OpenFlags(FileAccess access, FileDisposition disposition)
{
    int flags = O_CLOEXEC;
    switch (access) {
    case FileAccess::Read: flags |= O_RDONLY; break;
    case FileAccess::Write: flags |= O_WRONLY; break;
    case FileAccess::ReadWrite: flags |= O_RDWR; break;
    }
    switch (disposition) {
    case FileDisposition::OpenExisting: break;
    case FileDisposition::CreateAlways: flags |= O_CREAT | O_TRUNC; break;
    case FileDisposition::CreateNew: flags |= O_CREAT | O_EXCL; break;
    case FileDisposition::OpenAlways: flags |= O_CREAT; break;
    }
    return flags;
}

std::string FolderOf(const std::string& path)
{
    const auto slash = path.find_last_of('/');
    if (slash == std::string::npos)
        return ".";
    if (slash == 0)
        return "/";
    return path.substr(0, slash);
}

// Makes a rename durable; a failure here does not undo the rename, so it is
// not reported.
void SyncFolder(const std::string& path)
{
    const int folder = ::open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    ::fsync(folder);
    ::close(folder);
}

} // namespace

ErrorCode LastError()
{
    return Errno();
}

std::string ErrorText(ErrorCode code)
{
    // strerror's text, without strerror's shared buffer.
    return std::system_category().message(static_cast<int>(code));
}

FileHandle OpenFile(const std::string& path, FileAccess access, FileShare /*share*/,
                    FileDisposition disposition, std::uint32_t /*flags*/, ErrorCode& error)
{
    // Sharing and attributes have no meaning here; other processes may
    // always open the file.
    int fd = -1;
    do {
        fd = ::open(path.c_str(), OpenFlags(access, disposition), 0666);
    } while (fd < 0 && errno == EINTR);
    if (fd < 0) {
        error = Errno();
        return kInvalidFileHandle;
    }
    // A folder opens for reading here but is no file to read or map.
    struct stat info {};
    if (::fstat(fd, &info) == 0 && S_ISDIR(info.st_mode)) {
        ::close(fd);
        error = kErrorIsFolder;
        return kInvalidFileHandle;
    }
    error = 0;
    return fd;
}

void CloseFile(FileHandle handle)
{
    // Not retried on EINTR: the descriptor is released either way.
    ::close(Descriptor(handle));
}

namespace {
// Moves count bytes with read(2) or write(2), going on after a signal or a
// partial transfer; a transfer of 0 bytes (end of file) ends it early.
template <typename Byte, typename Transfer>
bool TransferAll(Transfer transfer, Byte* bytes, std::uint32_t count, std::uint32_t& done,
                 ErrorCode& error)
{
    done = 0;
    while (done < count) {
        const std::size_t chunk = std::min<std::size_t>(count - done, kMaxChunk);
        const ssize_t result = transfer(bytes + done, chunk);
        if (result < 0) {
            if (errno == EINTR)
                continue;
            error = Errno();
            return false;
        }
        if (result == 0)
            break;
        done += static_cast<std::uint32_t>(result);
    }
    error = 0;
    return true;
}
} // namespace

bool ReadFile(FileHandle handle, void* buffer, std::uint32_t count, std::uint32_t& done,
              ErrorCode& error)
{
    const auto read = [fd = Descriptor(handle)](std::uint8_t* at, std::size_t size) {
        return ::read(fd, at, size);
    };
    return TransferAll(read, static_cast<std::uint8_t*>(buffer), count, done, error);
}

bool WriteFile(FileHandle handle, const void* buffer, std::uint32_t count, std::uint32_t& done,
               ErrorCode& error)
{
    const auto write = [fd = Descriptor(handle)](const std::uint8_t* at, std::size_t size) {
        return ::write(fd, at, size);
    };
    return TransferAll(write, static_cast<const std::uint8_t*>(buffer), count, done, error);
}

bool SeekFile(FileHandle handle, std::int64_t distance, SeekMethod method, std::uint64_t& position,
              ErrorCode& error)
{
    int whence = SEEK_SET;
    switch (method) {
    case SeekMethod::Begin: whence = SEEK_SET; break;
    case SeekMethod::Current: whence = SEEK_CUR; break;
    case SeekMethod::End: whence = SEEK_END; break;
    }
    const off_t result = ::lseek(Descriptor(handle), static_cast<off_t>(distance), whence);
    if (result < 0) {
        error = Errno();
        return false;
    }
    position = static_cast<std::uint64_t>(result);
    error = 0;
    return true;
}

bool FlushFile(FileHandle handle, ErrorCode& error)
{
    return Succeeds([&] { return ::fsync(Descriptor(handle)); }, error);
}

bool GetFileSize(FileHandle handle, std::uint64_t& size, ErrorCode& error)
{
    struct stat info {};
    if (::fstat(Descriptor(handle), &info) < 0) {
        error = Errno();
        return false;
    }
    size = static_cast<std::uint64_t>(info.st_size);
    error = 0;
    return true;
}

MappingHandle CreateMapping(FileHandle handle, bool /*writable*/, ErrorCode& error)
{
    // mmap needs no mapping object: the token only has to be non-zero and
    // the descriptor valid.
    if (handle < 0 || ::fcntl(Descriptor(handle), F_GETFD) < 0) {
        error = handle < 0 ? EBADF : Errno();
        return kNoMapping;
    }
    error = 0;
    return handle + 1;
}

void CloseMapping(MappingHandle /*mapping*/) {}

void* MapView(MappingHandle /*mapping*/, FileHandle handle, std::uint64_t size, bool writable,
              ErrorCode& error)
{
    if (size == 0 || size > std::numeric_limits<std::size_t>::max()) {
        error = EINVAL;
        return nullptr;
    }
    const int protection = writable ? PROT_READ | PROT_WRITE : PROT_READ;
    void* view = ::mmap(nullptr, static_cast<std::size_t>(size), protection, MAP_SHARED,
                        Descriptor(handle), 0);
    if (view == MAP_FAILED) {
        error = Errno();
        return nullptr;
    }
    error = 0;
    return view;
}

void UnmapView(void* view, std::uint64_t size)
{
    if (view != nullptr)
        ::munmap(view, static_cast<std::size_t>(size));
}

bool ReplaceFile(const std::string& source, const std::string& target, ErrorCode& error)
{
    if (::rename(source.c_str(), target.c_str()) < 0) {
        error = Errno();
        return false;
    }
    SyncFolder(target);
    error = 0;
    return true;
}

bool RemoveFile(const std::string& path)
{
    return ::unlink(path.c_str()) == 0;
}

bool SetFileSize(FileHandle handle, std::uint64_t size, ErrorCode& error)
{
    return Succeeds([&] { return ::ftruncate(Descriptor(handle), static_cast<off_t>(size)); },
                    error);
}

std::string ResolveFinalPath(const std::string& path)
{
    // The system's own limit on links in one lookup (MAXSYMLINKS).
    constexpr int kMostLinks = 40;
    std::string current = path;
    for (int hop = 0; hop < kMostLinks; ++hop) {
        struct stat info {};
        if (::lstat(current.c_str(), &info) < 0 || !S_ISLNK(info.st_mode))
            return current;
        std::string target(static_cast<std::size_t>(PATH_MAX), '\0');
        const ssize_t length = ::readlink(current.c_str(), target.data(), target.size());
        if (length < 0 || static_cast<std::size_t>(length) >= target.size())
            return current;
        target.resize(static_cast<std::size_t>(length));
        current = target.starts_with('/') ? target : FolderOf(current) + "/" + target;
    }
    return path;
}

bool FileExists(const std::string& path)
{
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

bool IsFolder(const std::string& path)
{
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

void CopyFileAttributes(const std::string& model, FileHandle handle)
{
    struct stat info {};
    if (::stat(model.c_str(), &info) < 0)
        return;
    const int fd = Descriptor(handle);
    // Owner first: a change of owner may clear the set-id bits that the
    // mode then puts back. Only a privileged process may give the file away;
    // anyone may keep a group they belong to.
    if (::fchown(fd, info.st_uid, info.st_gid) < 0)
        (void)::fchown(fd, static_cast<uid_t>(-1), info.st_gid);
    (void)::fchmod(fd, info.st_mode & 07777);
}

bool IsFolderRefusal(ErrorCode code)
{
    return code == EACCES || code == EPERM;
}

} // namespace tarvix::platform
