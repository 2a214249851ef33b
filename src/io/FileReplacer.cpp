#include "io/FileMessages.h"
#include "io/FileStream.h"

#include <random>
#include <vector>

namespace tarvix {

namespace {

constexpr int kNameAttempts = 100;

// The new file lies next to the target so that the final rename stays on one
// file system and is atomic; CreateNew makes a stray file of the same name
// impossible to overwrite.
bool CreateTemporaryFile(const std::string& target, CFileStream& file, std::string& error)
{
    std::random_device seed;
    std::mt19937 random(seed());
    std::uniform_int_distribution<std::uint32_t> digit(0, 15);
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        std::string name = target + ".tmp";
        for (int i = 0; i < 8; ++i)
            name += "0123456789abcdef"[digit(random)];
        if (file.Open(name, error, platform::FileAccess::Write, platform::FileShare::None,
                      platform::FileDisposition::CreateNew))
            return true;
        if (file.GetLastError() != platform::kErrorFileExists)
            return false;
    }
    return false;
}

bool ReadWhole(CFileStream& file, std::vector<std::uint8_t>& bytes)
{
    std::uint64_t size = 0;
    platform::ErrorCode code = 0;
    if (!platform::GetFileSize(file.GetHandle(), size, code)) {
        file.SetError(code);
        return false;
    }
    if (size > 0xFFFFFFFFu) {
        file.SetError(platform::kErrorOverflow);
        return false;
    }
    bytes.resize(static_cast<std::size_t>(size));
    std::string ignored;
    std::uint32_t done = 0;
    return file.Read(bytes.data(), static_cast<std::uint32_t>(bytes.size()), ignored, &done) &&
           done == bytes.size();
}

// Puts bytes at the start of the open file and cuts it there.
bool Overwrite(CFileStream& file, const void* bytes, std::uint32_t count)
{
    std::string ignored;
    platform::ErrorCode code = 0;
    if (file.Seek(0, platform::SeekMethod::Begin, ignored) == CFileStream::kSeekFailed ||
        !file.Write(bytes, count, ignored))
        return false;
    if (!platform::SetFileSize(file.GetHandle(), count, code)) {
        file.SetError(code);
        return false;
    }
    return file.Flush();
}

// The fallback for a file whose folder takes no new entries: it is rewritten
// where it is, with its old bytes held in this process's memory and written
// back when the new ones do not go in. What this gives up against the
// replacing rename:
// - it is not atomic: a crash, a kill or a power loss during the write
//   leaves the file part new, part old or cut short, and other programs
//   reading it meanwhile may see it so;
// - the only copy of the old bytes is in memory: when writing them back
//   fails too (a disk error, or a copy-on-write file system that is full),
//   the file is left damaged and the message says so;
// - every hard link to the file sees the new bytes (a rename would have
//   detached this name from the others);
// - the file keeps its inode, owner and mode, as a matter of course.
bool WriteInPlace(const std::string& target, const std::string& path, const void* bytes,
                  std::uint32_t count, std::string& error)
{
    CFileStream file;
    std::vector<std::uint8_t> old;
    if (!file.Open(target, error, platform::FileAccess::ReadWrite, platform::FileShare::None,
                   platform::FileDisposition::OpenExisting) ||
        !ReadWhole(file, old)) {
        error = file.FormatError(file_messages::kWrite, path);
        return false;
    }
    if (Overwrite(file, bytes, count))
        return true;
    const std::string failure = file.FormatError(file_messages::kWrite, path);
    const platform::ErrorCode code = file.GetLastError();
    const bool restored = Overwrite(file, old.data(), static_cast<std::uint32_t>(old.size()));
    file.SetError(code);
    error = restored ? failure : file.FormatError(file_messages::kWriteUnrestored, path);
    return false;
}

// How a write to target begins: with a new file beside it, left open in
// file; or, when the folder takes no new file but target is there, in place
// (file stays closed). False, with the message, when neither is possible.
bool StartWrite(const std::string& target, const std::string& path, CFileStream& file,
                std::string& error)
{
    // A folder is refused before anything is made beside it.
    if (platform::IsFolder(target)) {
        file.SetError(platform::kErrorIsFolder);
        error = file.FormatError(file_messages::kWrite, path);
        return false;
    }
    if (CreateTemporaryFile(target, file, error))
        return true;
    if (platform::IsFolderRefusal(file.GetLastError()) && platform::FileExists(target))
        return true;
    error = file.FormatError(file_messages::kWrite, path);
    return false;
}

} // namespace

bool CanWriteFileReplacing(const std::string& path, std::string& error)
{
    const std::string target = platform::ResolveFinalPath(path);
    CFileStream file;
    if (!StartWrite(target, path, file, error))
        return false;
    if (file.IsOpen()) {
        const std::string temporary = file.GetFileName();
        file.Close();
        platform::RemoveFile(temporary);
        return true;
    }
    // In place: the file itself must take the bytes.
    if (!file.Open(target, error, platform::FileAccess::ReadWrite, platform::FileShare::ReadWrite,
                   platform::FileDisposition::OpenExisting)) {
        error = file.FormatError(file_messages::kWrite, path);
        return false;
    }
    file.Close();
    return true;
}

// Every message names the file the user asked for, not the temporary one
// they never chose nor the file a link of theirs points to.
bool WriteFileReplacing(const std::string& path, const void* bytes, std::uint32_t count,
                        std::string& error)
{
    const std::string target = platform::ResolveFinalPath(path);
    CFileStream file;
    if (!StartWrite(target, path, file, error))
        return false;
    if (!file.IsOpen())
        return WriteInPlace(target, path, bytes, count, error);

    const std::string temporary = file.GetFileName();
    platform::CopyFileAttributes(target, file.GetHandle());
    const bool written = file.Write(bytes, count, error) && file.Flush();
    if (!written)
        error = file.FormatError(file_messages::kWrite, path);
    file.Close();

    if (written) {
        platform::ErrorCode code = 0;
        if (platform::ReplaceFile(temporary, target, code))
            return true;
        file.SetError(code);
        error = file.FormatError(file_messages::kWrite, path);
    }
    platform::RemoveFile(temporary);
    return false;
}

} // namespace tarvix
