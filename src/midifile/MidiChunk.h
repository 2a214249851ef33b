#pragma once

#include <array>
#include <cstdint>

namespace tarvix {

class CMidiFileStream;

// The 8-byte head of every chunk of a file: a 4-character id and the
// big-endian length of the body.
class CMidiChunk {
public:
    static constexpr std::uint32_t kOther = 0;
    static constexpr std::uint32_t kHeader = 1;
    static constexpr std::uint32_t kTrack = 2;

    std::uint32_t GetKind() const { return m_kind; }
    const std::array<char, 4>& GetId() const { return m_id; }
    // The body length last read or written.
    std::uint32_t GetLength() const { return m_length; }

    // False when fewer than 8 bytes are left, or for an id other than "MThd"
    // and "MTrk" (kind 0).
    bool ReadChunkHeader(CMidiFileStream& stream);
    void WriteChunkHeader(CMidiFileStream& stream) const;

protected:
    CMidiChunk(std::uint32_t kind, const char (&id)[5], std::uint32_t length);

    std::uint32_t m_kind;
    std::array<char, 4> m_id;
    std::uint32_t m_length;
};

// "MThd": format, number of tracks and division (ticks per quarter note; an
// SMPTE division is carried as its raw value). The track count is data only:
// reading does not use it and writing does not recompute it.
class CMidiHeader : public CMidiChunk {
public:
    CMidiHeader() : CMidiChunk(kHeader, "MThd", 6) {}

    // Extra header bytes are skipped; a declared length below 6 moves the
    // stream back by the difference.
    bool Read(CMidiFileStream& stream);
    void Write(CMidiFileStream& stream);
    void Reset() { *this = CMidiHeader(); }

    std::uint16_t format = 0;
    std::uint16_t trackCount = 0;
    std::uint16_t division = 0;
};

// Big-endian numbers of the chunk heads.
bool ReadBigEndian(CMidiFileStream& stream, std::uint32_t byteCount, std::uint32_t& value);
void WriteBigEndian(CMidiFileStream& stream, std::uint32_t byteCount, std::uint32_t value);

} // namespace tarvix
