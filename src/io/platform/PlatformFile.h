#pragma once

// The only place that talks to the operating system's file API. Each
// platform has one implementation file (PosixFile.cpp, WinFile.cpp); the classes
// above it are written once for all of them.

#include <cstdint>
#include <string>

namespace tarvix::platform {

using FileHandle = std::intptr_t;
inline constexpr FileHandle kInvalidFileHandle = -1;
using ErrorCode = std::uint32_t;

enum class FileAccess { Read, Write, ReadWrite };
enum class FileShare { None, Read, Write, ReadWrite };
enum class FileDisposition {
    OpenExisting, // fail when the file is missing
    CreateAlways, // create, or truncate an existing file
    CreateNew,    // fail when the file exists
    OpenAlways,   // open, or create when missing
};
enum class SeekMethod { Begin, Current, End };

// The platform's codes for a short write (disk full), for data that is not
// what was expected (an empty file where bytes are needed), for a file that
// already exists, for a value too large for its type (a file position
// beyond 32 bits), and for a folder where a file is needed.
extern const ErrorCode kErrorDiskFull;
extern const ErrorCode kErrorInvalidData;
extern const ErrorCode kErrorFileExists;
extern const ErrorCode kErrorOverflow;
extern const ErrorCode kErrorIsFolder;

ErrorCode LastError();
// The system's text for a code, as the system words it (it may hold line ends).
std::string ErrorText(ErrorCode code);

// flags are the platform's attributes and flags (0 for a normal file); a
// folder is never opened as a file.
FileHandle OpenFile(const std::string& path, FileAccess access, FileShare share,
                    FileDisposition disposition, std::uint32_t flags, ErrorCode& error);
void CloseFile(FileHandle handle);
// Reads up to count bytes; a short count is the end of the file, not an error.
bool ReadFile(FileHandle handle, void* buffer, std::uint32_t count, std::uint32_t& done,
              ErrorCode& error);
bool WriteFile(FileHandle handle, const void* buffer, std::uint32_t count, std::uint32_t& done,
               ErrorCode& error);
bool SeekFile(FileHandle handle, std::int64_t distance, SeekMethod method, std::uint64_t& position,
              ErrorCode& error);
bool FlushFile(FileHandle handle, ErrorCode& error);
bool GetFileSize(FileHandle handle, std::uint64_t& size, ErrorCode& error);
// Cuts or extends the file to size bytes.
bool SetFileSize(FileHandle handle, std::uint64_t size, ErrorCode& error);

// Mapping is two steps, as on Windows (a mapping object, then a view of it);
// where the system needs no mapping object the first step only checks.
using MappingHandle = std::intptr_t;
inline constexpr MappingHandle kNoMapping = 0;
MappingHandle CreateMapping(FileHandle handle, bool writable, ErrorCode& error);
void CloseMapping(MappingHandle mapping);
void* MapView(MappingHandle mapping, FileHandle handle, std::uint64_t size, bool writable,
              ErrorCode& error);
void UnmapView(void* view, std::uint64_t size);

// Replaces target with source in one step, so readers see the old or the new
// file and never a half-written one.
bool ReplaceFile(const std::string& source, const std::string& target, ErrorCode& error);
bool RemoveFile(const std::string& path);

// The file path finally names once the symbolic links it passes through are
// followed; path itself when it is no link. A link to a missing file gives
// the missing file's path, so that a save creates the file the link points
// to. A loop of links gives path back unchanged.
std::string ResolveFinalPath(const std::string& path);
bool FileExists(const std::string& path);
bool IsFolder(const std::string& path);
// Gives the file open at handle the permission bits of the file at model,
// and its owner and group as far as the process may set them. Does nothing
// when model is missing; a part the system refuses is left as it is.
void CopyFileAttributes(const std::string& model, FileHandle handle);
// Whether a failure to create a file says that its folder takes no new
// entries (no write permission on it), while a file already there may still
// be writable.
bool IsFolderRefusal(ErrorCode code);

} // namespace tarvix::platform
