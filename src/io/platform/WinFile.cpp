#include "io/platform/PlatformFile.h"

#include "io/platform/WideText.h"

#include <limits>
#include <string_view>

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
// Ours is the portable name below; the system's macro would rename it.
#undef ReplaceFile

namespace tarvix::platform {

const ErrorCode kErrorDiskFull = ERROR_DISK_FULL;
const ErrorCode kErrorInvalidData = ERROR_INVALID_DATA;
const ErrorCode kErrorFileExists = ERROR_FILE_EXISTS;
const ErrorCode kErrorOverflow = ERROR_ARITHMETIC_OVERFLOW;
// What the system itself answers when a folder is opened as a file.
const ErrorCode kErrorIsFolder = ERROR_ACCESS_DENIED;

namespace {

HANDLE Native(FileHandle handle)
{
    return reinterpret_cast<HANDLE>(handle);
}

FileHandle Portable(HANDLE handle)
{
    return reinterpret_cast<FileHandle>(handle);
}

DWORD Access(FileAccess access)
{
    switch (access) {
    case FileAccess::Read: return GENERIC_READ;
    case FileAccess::Write: return GENERIC_WRITE;
    case FileAccess::ReadWrite: return GENERIC_READ | GENERIC_WRITE;
    }
    return GENERIC_READ;
}

DWORD Share(FileShare share)
{
    switch (share) {
    case FileShare::None: return 0;
    case FileShare::Read: return FILE_SHARE_READ;
    case FileShare::Write: return FILE_SHARE_WRITE;
    case FileShare::ReadWrite: return FILE_SHARE_READ | FILE_SHARE_WRITE;
    }
    return 0;
}

DWORD Disposition(FileDisposition disposition)
{
    switch (disposition) {
    case FileDisposition::OpenExisting: return OPEN_EXISTING;
    case FileDisposition::CreateAlways: return CREATE_ALWAYS;
    case FileDisposition::CreateNew: return CREATE_NEW;
    case FileDisposition::OpenAlways: return OPEN_ALWAYS;
    }
    return OPEN_EXISTING;
}

} // namespace

ErrorCode LastError()
{
    return ::GetLastError();
}

std::string ErrorText(ErrorCode code)
{
    // The system allocates the text; it is copied and freed at once.
    wchar_t* text = nullptr;
    const DWORD length = ::FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, code, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<wchar_t*>(&text),
        0, nullptr);
    if (length == 0 || text == nullptr)
        return "Error " + std::to_string(code);
    std::string result = NarrowText(std::wstring_view(text, length));
    ::LocalFree(text);
    return result;
}

FileHandle OpenFile(const std::string& path, FileAccess access, FileShare share,
                    FileDisposition disposition, std::uint32_t flags, ErrorCode& error)
{
    const HANDLE handle = ::CreateFileW(WideText(path).c_str(), Access(access), Share(share),
                                        nullptr, Disposition(disposition),
                                        flags == 0 ? FILE_ATTRIBUTE_NORMAL : flags, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        error = ::GetLastError();
        return kInvalidFileHandle;
    }
    error = 0;
    return Portable(handle);
}

void CloseFile(FileHandle handle)
{
    ::CloseHandle(Native(handle));
}

bool ReadFile(FileHandle handle, void* buffer, std::uint32_t count, std::uint32_t& done,
              ErrorCode& error)
{
    DWORD read = 0;
    const BOOL ok = ::ReadFile(Native(handle), buffer, count, &read, nullptr);
    done = read;
    error = ok ? 0 : ::GetLastError();
    return ok != FALSE;
}

bool WriteFile(FileHandle handle, const void* buffer, std::uint32_t count, std::uint32_t& done,
               ErrorCode& error)
{
    DWORD written = 0;
    const BOOL ok = ::WriteFile(Native(handle), buffer, count, &written, nullptr);
    done = written;
    error = ok ? 0 : ::GetLastError();
    return ok != FALSE;
}

bool SeekFile(FileHandle handle, std::int64_t distance, SeekMethod method, std::uint64_t& position,
              ErrorCode& error)
{
    DWORD origin = FILE_BEGIN;
    switch (method) {
    case SeekMethod::Begin: origin = FILE_BEGIN; break;
    case SeekMethod::Current: origin = FILE_CURRENT; break;
    case SeekMethod::End: origin = FILE_END; break;
    }
    LARGE_INTEGER move{};
    move.QuadPart = distance;
    LARGE_INTEGER result{};
    if (!::SetFilePointerEx(Native(handle), move, &result, origin)) {
        error = ::GetLastError();
        return false;
    }
    position = static_cast<std::uint64_t>(result.QuadPart);
    error = 0;
    return true;
}

bool FlushFile(FileHandle handle, ErrorCode& error)
{
    if (!::FlushFileBuffers(Native(handle))) {
        error = ::GetLastError();
        return false;
    }
    error = 0;
    return true;
}

bool GetFileSize(FileHandle handle, std::uint64_t& size, ErrorCode& error)
{
    // The low word may legitimately be all ones, so failure is told by the
    // last error, which is cleared first.
    DWORD high = 0;
    ::SetLastError(NO_ERROR);
    const DWORD low = ::GetFileSize(Native(handle), &high);
    if (low == INVALID_FILE_SIZE && ::GetLastError() != NO_ERROR) {
        error = ::GetLastError();
        return false;
    }
    size = (static_cast<std::uint64_t>(high) << 32) | low;
    error = 0;
    return true;
}

MappingHandle CreateMapping(FileHandle handle, bool writable, ErrorCode& error)
{
    // Size 0 maps the whole file as it is now.
    const HANDLE mapping = ::CreateFileMappingW(
        Native(handle), nullptr, writable ? PAGE_READWRITE : PAGE_READONLY, 0, 0, nullptr);
    if (mapping == nullptr) {
        error = ::GetLastError();
        return kNoMapping;
    }
    error = 0;
    return reinterpret_cast<MappingHandle>(mapping);
}

void CloseMapping(MappingHandle mapping)
{
    if (mapping != kNoMapping)
        ::CloseHandle(reinterpret_cast<HANDLE>(mapping));
}

void* MapView(MappingHandle mapping, FileHandle /*handle*/, std::uint64_t size, bool writable,
              ErrorCode& error)
{
    if (size == 0 || size > std::numeric_limits<SIZE_T>::max()) {
        error = ERROR_INVALID_PARAMETER;
        return nullptr;
    }
    void* view =
        ::MapViewOfFile(reinterpret_cast<HANDLE>(mapping),
                        writable ? FILE_MAP_WRITE : FILE_MAP_READ, 0, 0, static_cast<SIZE_T>(size));
    if (view == nullptr) {
        error = ::GetLastError();
        return nullptr;
    }
    error = 0;
    return view;
}

void UnmapView(void* view, std::uint64_t /*size*/)
{
    if (view != nullptr)
        ::UnmapViewOfFile(view);
}

bool ReplaceFile(const std::string& source, const std::string& target, ErrorCode& error)
{
    const std::wstring from = WideText(source);
    const std::wstring to = WideText(target);
    // A folder is never replaced by a file (wine's ReplaceFileW would move
    // the folder aside and succeed).
    const DWORD targetAttributes = ::GetFileAttributesW(to.c_str());
    if (targetAttributes != INVALID_FILE_ATTRIBUTES &&
        (targetAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        error = kErrorIsFolder;
        return false;
    }
    // ReplaceFileW keeps the target's owner and access rights on the new
    // bytes, as a save over an existing file should. A first save has no
    // target and moves the new file into place.
    if (::ReplaceFileW(to.c_str(), from.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr,
                       nullptr)) {
        error = 0;
        return true;
    }
    if (targetAttributes != INVALID_FILE_ATTRIBUTES) {
        error = ::GetLastError();
        return false;
    }
    if (!::MoveFileExW(from.c_str(), to.c_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        error = ::GetLastError();
        return false;
    }
    error = 0;
    return true;
}

bool RemoveFile(const std::string& path)
{
    return ::DeleteFileW(WideText(path).c_str()) != FALSE;
}

bool SetFileSize(FileHandle handle, std::uint64_t size, ErrorCode& error)
{
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(size);
    if (!::SetFilePointerEx(Native(handle), end, nullptr, FILE_BEGIN) ||
        !::SetEndOfFile(Native(handle))) {
        error = ::GetLastError();
        return false;
    }
    error = 0;
    return true;
}

std::string ResolveFinalPath(const std::string& path)
{
    const std::wstring wide = WideText(path);
    const DWORD attributes = ::GetFileAttributesW(wide.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        return path;
    // The system follows the whole chain of links when it opens the file; a
    // link to a missing file stays as it is.
    const HANDLE file =
        ::CreateFileW(wide.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return path;
    std::wstring final(MAX_PATH, L'\0');
    DWORD length =
        ::GetFinalPathNameByHandleW(file, final.data(), static_cast<DWORD>(final.size()), 0);
    if (length >= final.size()) {
        final.resize(length);
        length =
            ::GetFinalPathNameByHandleW(file, final.data(), static_cast<DWORD>(final.size()), 0);
    }
    ::CloseHandle(file);
    if (length == 0 || length >= final.size())
        return path;
    final.resize(length);
    // The answer has the long-path prefix, which the program's messages do
    // not show: "\\?\C:\x" is "C:\x", "\\?\UNC\server\x" is "\\server\x".
    constexpr std::wstring_view kPrefix = L"\\\\?\\";
    constexpr std::wstring_view kNetworkPrefix = L"\\\\?\\UNC\\";
    if (std::wstring_view(final).starts_with(kNetworkPrefix))
        final.replace(0, kNetworkPrefix.size(), L"\\\\");
    else if (std::wstring_view(final).starts_with(kPrefix))
        final.erase(0, kPrefix.size());
    return NarrowText(final);
}

bool FileExists(const std::string& path)
{
    return ::GetFileAttributesW(WideText(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool IsFolder(const std::string& path)
{
    const DWORD attributes = ::GetFileAttributesW(WideText(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

void CopyFileAttributes(const std::string& model, FileHandle handle)
{
    // Owner and access rights come with ReplaceFileW; the attributes a user
    // sets (hidden, archive, ...) are given to the new file here, because
    // not every ReplaceFileW (wine's) carries them over.
    constexpr DWORD kKept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                            FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    const DWORD attributes = ::GetFileAttributesW(WideText(model).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & kKept) == 0)
        return;
    FILE_BASIC_INFO info{};
    info.FileAttributes = attributes & kKept;
    ::SetFileInformationByHandle(Native(handle), FileBasicInfo, &info, sizeof info);
}

bool IsFolderRefusal(ErrorCode code)
{
    return code == ERROR_ACCESS_DENIED;
}

} // namespace tarvix::platform
