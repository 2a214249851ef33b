#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tarvix {

// The byte stream a Standard MIDI File is read from or written to. Reading
// always works on bytes in memory: a file is read whole when it is opened,
// so parsing never waits on the system byte by byte, and the same parser
// serves a caller's bytes. Writing collects the bytes in memory, where a
// chunk's length can be patched by seeking back, and Close hands them to the
// file through a temporary file, so a failed write never harms the old one.
//
// Failures of the file itself (open, read, write, memory) throw
// CMidiFileException with the file stream's sentence; the end of the bytes is
// not a failure: reads come back short.
class CMidiFileStream {
public:
    static constexpr int kModeRead = 1;
    static constexpr int kModeWrite = 2;

    CMidiFileStream() = default;
    // Reads the caller's bytes, which must outlive the reading.
    explicit CMidiFileStream(std::span<const std::uint8_t> bytes) { OpenBytes(bytes); }
    CMidiFileStream(const CMidiFileStream&) = delete;
    CMidiFileStream& operator=(const CMidiFileStream&) = delete;
    ~CMidiFileStream() = default;

    // Mode 1 reads an existing file, mode 2 writes the file anew on Close.
    // False, and nothing opened, for any other mode. Opening drops whatever
    // the stream held, unwritten bytes included.
    bool Open(const std::string& path, int mode);
    void OpenBytes(std::span<const std::uint8_t> bytes);
    // Writes to memory only; GetWrittenBytes gives the result.
    void OpenMemoryForWriting();
    // A stream opened on a path for writing writes its file here, and throws
    // when it cannot. A stream destroyed without Close writes nothing.
    void Close();

    // 0 when closed, else kModeRead or kModeWrite.
    int GetMode() const { return m_mode; }
    std::uint32_t GetPosition() const { return m_position; }

    bool ReadByte(std::uint8_t& value)
    {
        if (m_position >= m_view.size())
            return false;
        value = m_view[m_position++];
        return true;
    }
    // The number of bytes read: fewer than count at the end of the bytes.
    std::uint32_t Read(std::uint8_t* bytes, std::uint32_t count);
    // Moves past up to count bytes; the number moved past.
    std::uint32_t Skip(std::uint32_t count)
    {
        const std::uint32_t done = count < GetRemaining() ? count : GetRemaining();
        m_position += done;
        return done;
    }
    std::uint32_t GetRemaining() const
    {
        const auto size = static_cast<std::uint32_t>(m_view.size());
        return m_position < size ? size - m_position : 0;
    }
    // Moves the read position. Past the end it stops at the end; before the
    // start it fails and leaves the stream at its end, so reading stops.
    // False, and nothing moved, when the stream is not reading.
    bool Seek(std::int32_t distance);

    void Write(const void* bytes, std::uint32_t count);
    void WriteByte(std::uint8_t value) { Write(&value, 1); }
    // Moves the write position within the bytes written so far; nothing
    // when the stream is not writing.
    void SeekTo(std::uint32_t position);
    std::span<const std::uint8_t> GetWrittenBytes() const { return m_bytes; }

private:
    void Reset();
    void ReadFile(const std::string& path);
    void Resize(std::size_t size);

    int m_mode = 0;
    // The file to write on Close; empty when writing to memory only.
    std::string m_path;
    // The file read, or the bytes written.
    std::vector<std::uint8_t> m_bytes;
    // What reading reads: m_bytes, or the caller's bytes.
    std::span<const std::uint8_t> m_view;
    std::uint32_t m_position = 0;
};

} // namespace tarvix
