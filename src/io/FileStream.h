#pragma once

#include "io/platform/PlatformFile.h"

#include <cstdint>
#include <string>

namespace tarvix {

// An operating-system file. It never throws and never shows anything: every
// failure returns false and writes one complete sentence, ending in "\n",
// into the caller's string, and leaves the system's code and text here for
// callers that word their own message.
class CFileStream {
public:
    CFileStream() = default;
    CFileStream(const CFileStream&) = delete;
    CFileStream& operator=(const CFileStream&) = delete;
    virtual ~CFileStream();

    virtual bool Open(const std::string& name, std::string& error, platform::FileAccess access,
                      platform::FileShare share, platform::FileDisposition disposition,
                      std::uint32_t flags = 0);
    virtual void Close();
    // A short read is the end of the file, not a failure: compare *done.
    virtual bool Read(void* buffer, std::uint32_t count, std::string& error,
                      std::uint32_t* done = nullptr);
    // A short write is a failure, reported as the system's disk-full error.
    virtual bool Write(const void* buffer, std::uint32_t count, std::string& error,
                       std::uint32_t* done = nullptr);
    // The new position, or kSeekFailed.
    virtual std::uint32_t Seek(std::int32_t distance, platform::SeekMethod method,
                               std::string& error);
    virtual bool Sync();
    virtual bool Flush();
    virtual void SetError(platform::ErrorCode code);

    static constexpr std::uint32_t kSeekFailed = 0xFFFFFFFF;

    bool IsOpen() const { return m_handle != platform::kInvalidFileHandle; }
    platform::FileHandle GetHandle() const { return m_handle; }
    platform::ErrorCode GetLastError() const { return m_lastError; }
    // The system's text for the last error, without CR or LF.
    const std::string& GetErrorText() const { return m_errorText; }
    const std::string& GetFileName() const { return m_fileName; }

    // "Can't <verb> file \"name\": text\n" for the current error.
    std::string FormatError(const char* format, const std::string& name) const;

private:
    platform::FileHandle m_handle = platform::kInvalidFileHandle;
    platform::ErrorCode m_lastError = 0;
    std::string m_errorText;
    std::string m_fileName;
};

// A file mapped whole into memory after opening; the .syx reader parses the
// mapped bytes in place.
class CMappedFileStream : public CFileStream {
public:
    CMappedFileStream() = default;
    ~CMappedFileStream() override;

    bool Open(const std::string& name, std::string& error, platform::FileAccess access,
              platform::FileShare share, platform::FileDisposition disposition,
              std::uint32_t flags = 0) override;
    void Close() override;

    const std::uint8_t* GetView() const { return static_cast<const std::uint8_t*>(m_view); }
    std::uint32_t GetFileSize() const { return m_fileSize; }

private:
    platform::MappingHandle m_mapping = platform::kNoMapping;
    void* m_view = nullptr;
    std::uint32_t m_fileSize = 0;
};

// Writes bytes to path without ever destroying the file that is there: the
// bytes go to a new file beside it, are flushed to disk, and only then
// replace it. A symbolic link is followed: the file it points to is
// replaced and the link stays. The new file keeps the old one's permission
// bits, and its owner and group where the process may set them. When the
// folder takes no new file but the file itself is writable, the file is
// rewritten in place with its old bytes kept in memory (see FileReplacer.cpp
// for what that gives up). On failure the old file is as it was, no
// temporary file is left, and error names path with the system's text.
bool WriteFileReplacing(const std::string& path, const void* bytes, std::uint32_t count,
                        std::string& error);
// Whether WriteFileReplacing(path, ...) would get its bytes in, found out
// without touching the file: what it would make beside the file is made and
// removed again. On failure error is the message the write would give.
bool CanWriteFileReplacing(const std::string& path, std::string& error);

} // namespace tarvix
