#include "io/FileStream.h"

#include "io/FileMessages.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace tarvix {

CFileStream::~CFileStream()
{
    CFileStream::Close();
}

bool CFileStream::Open(const std::string& name, std::string& error, platform::FileAccess access,
                       platform::FileShare share, platform::FileDisposition disposition,
                       std::uint32_t flags)
{
    Close();
    platform::ErrorCode code = 0;
    const platform::FileHandle handle =
        platform::OpenFile(name, access, share, disposition, flags, code);
    if (handle == platform::kInvalidFileHandle) {
        SetError(code);
        error = FormatError(file_messages::kOpen, name);
        return false;
    }
    m_handle = handle;
    SetError(0);
    m_fileName = name;
    return true;
}

void CFileStream::Close()
{
    if (m_handle == platform::kInvalidFileHandle)
        return;
    platform::CloseFile(m_handle);
    m_handle = platform::kInvalidFileHandle;
    m_fileName.clear();
}

bool CFileStream::Read(void* buffer, std::uint32_t count, std::string& error, std::uint32_t* done)
{
    if (count == 0)
        return true;
    std::uint32_t read = 0;
    platform::ErrorCode code = 0;
    const bool ok = platform::ReadFile(m_handle, buffer, count, read, code);
    if (done != nullptr)
        *done = read;
    if (!ok) {
        SetError(code);
        error = FormatError(file_messages::kRead, m_fileName);
        return false;
    }
    return true;
}

bool CFileStream::Write(const void* buffer, std::uint32_t count, std::string& error,
                        std::uint32_t* done)
{
    if (count == 0)
        return true;
    std::uint32_t written = 0;
    platform::ErrorCode code = 0;
    bool ok = platform::WriteFile(m_handle, buffer, count, written, code);
    if (done != nullptr)
        *done = written;
    if (ok && written < count) {
        // The system took fewer bytes without saying why: by far the most
        // likely reason, and the one the user can act on, is a full disk.
        ok = false;
        code = platform::kErrorDiskFull;
    }
    if (!ok) {
        SetError(code);
        error = FormatError(file_messages::kWrite, m_fileName);
        return false;
    }
    return true;
}

std::uint32_t CFileStream::Seek(std::int32_t distance, platform::SeekMethod method,
                                std::string& error)
{
    std::uint64_t position = 0;
    platform::ErrorCode code = 0;
    bool ok = platform::SeekFile(m_handle, distance, method, position, code);
    if (ok && position >= kSeekFailed) {
        // Not expressible in the 32-bit result, and the last value is
        // reserved for failure.
        ok = false;
        code = platform::kErrorOverflow;
    }
    if (!ok) {
        SetError(code);
        error = FormatError(file_messages::kSeek, m_fileName);
        return kSeekFailed;
    }
    return static_cast<std::uint32_t>(position);
}

bool CFileStream::Sync()
{
    std::string ignored;
    Seek(0, platform::SeekMethod::Current, ignored);
    return true;
}

bool CFileStream::Flush()
{
    platform::ErrorCode code = 0;
    if (!platform::FlushFile(m_handle, code)) {
        SetError(code);
        return false;
    }
    return true;
}

void CFileStream::SetError(platform::ErrorCode code)
{
    m_lastError = code;
    m_errorText = platform::ErrorText(code);
    std::erase_if(m_errorText, [](char c) { return c == '\r' || c == '\n'; });
}

std::string CFileStream::FormatError(const char* format, const std::string& name) const
{
    const int length = std::snprintf(nullptr, 0, format, name.c_str(), m_errorText.c_str());
    if (length <= 0)
        return {};
    std::vector<char> text(static_cast<std::size_t>(length) + 1);
    std::snprintf(text.data(), text.size(), format, name.c_str(), m_errorText.c_str());
    return {text.data(), static_cast<std::size_t>(length)};
}

} // namespace tarvix
