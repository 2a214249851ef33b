#pragma once

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>

#include "io/FileStream.h"
#include "support/TempDir.h"

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
// The system's macro would rename CMidiFileException::GetMessage in the
// tests that include this.
#undef GetMessage
#endif

namespace tarvix::testing {

// The codes the tests provoke, as this system numbers them.
namespace expected {
#ifdef _WIN32
inline constexpr int kMissingFile = ERROR_FILE_NOT_FOUND;
inline constexpr int kMissingFolder = ERROR_PATH_NOT_FOUND;
inline constexpr int kFolderAsFile = ERROR_ACCESS_DENIED;
inline constexpr int kReadOnWriteOnly = ERROR_ACCESS_DENIED;
inline constexpr int kNegativeSeek = ERROR_NEGATIVE_SEEK;
inline constexpr int kPositionTooLarge = ERROR_ARITHMETIC_OVERFLOW;
inline constexpr int kEmptyFile = ERROR_INVALID_DATA;
inline constexpr int kDiskFull = ERROR_DISK_FULL;
// Windows refuses a writable mapping object of a write-only file; POSIX
// only refuses the view.
inline constexpr int kWriteOnlyMapping = ERROR_ACCESS_DENIED;
inline constexpr const char* kWriteOnlyMappingStep = "create mapping for";
#else
inline constexpr int kMissingFile = ENOENT;
inline constexpr int kMissingFolder = ENOENT;
inline constexpr int kFolderAsFile = EISDIR;
inline constexpr int kReadOnWriteOnly = EBADF;
inline constexpr int kNegativeSeek = EINVAL;
inline constexpr int kPositionTooLarge = EOVERFLOW;
inline constexpr int kEmptyFile = ENODATA;
inline constexpr int kDiskFull = ENOSPC;
inline constexpr int kWriteOnlyMapping = EACCES;
inline constexpr const char* kWriteOnlyMappingStep = "create mapping view for";
#endif
} // namespace expected

// The system's own text for a code, asked of the system directly, on one
// line as the file classes report it.
inline std::string SystemText(int code)
{
#ifdef _WIN32
    char text[512] = {};
    ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                     static_cast<DWORD>(code), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), text,
                     sizeof text, nullptr);
    std::string line;
    for (const char* c = text; *c != '\0'; ++c)
        if (*c != '\r' && *c != '\n')
            line += *c;
    return line;
#else
    return std::strerror(code);
#endif
}

// The sentence the file classes report for verb ("open", "read", ...) and a
// system error code.
inline std::string FileMessage(const std::string& verb, const std::string& name, int code)
{
    return "Can't " + verb + " file \"" + name + "\": " + SystemText(code) + "\n";
}

// Saves text to path as the program saves a file, replacing what is there.
inline bool Replace(const std::string& path, const std::string& text, std::string& error)
{
    return WriteFileReplacing(path, text.data(), static_cast<std::uint32_t>(text.size()), error);
}

inline std::set<std::string> FolderEntries(const std::filesystem::path& folder)
{
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.insert(Utf8Path(entry.path().filename()));
    return names;
}

} // namespace tarvix::testing
