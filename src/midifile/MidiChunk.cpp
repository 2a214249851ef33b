#include "midifile/MidiChunk.h"

#include "midifile/MidiFileStream.h"

#include <cstring>

namespace tarvix {

namespace {
constexpr std::uint32_t kHeaderBodyLength = 6;
} // namespace

bool ReadBigEndian(CMidiFileStream& stream, std::uint32_t byteCount, std::uint32_t& value)
{
    std::uint8_t bytes[4] = {};
    if (byteCount > sizeof bytes || stream.Read(bytes, byteCount) != byteCount)
        return false;
    value = 0;
    for (std::uint32_t i = 0; i < byteCount; ++i)
        value = (value << 8) | bytes[i];
    return true;
}

void WriteBigEndian(CMidiFileStream& stream, std::uint32_t byteCount, std::uint32_t value)
{
    std::uint8_t bytes[4] = {};
    for (std::uint32_t i = 0; i < byteCount && i < sizeof bytes; ++i)
        bytes[i] = static_cast<std::uint8_t>(value >> (8 * (byteCount - 1 - i)));
    stream.Write(bytes, byteCount < sizeof bytes ? byteCount : sizeof bytes);
}

CMidiChunk::CMidiChunk(std::uint32_t kind, const char (&id)[5], std::uint32_t length)
    : m_kind(kind), m_length(length)
{
    std::memcpy(m_id.data(), id, m_id.size());
}

bool CMidiChunk::ReadChunkHeader(CMidiFileStream& stream)
{
    std::uint8_t id[4];
    if (stream.Read(id, 4) != 4)
        return false;
    std::memcpy(m_id.data(), id, m_id.size());
    if (std::memcmp(id, "MThd", 4) == 0)
        m_kind = kHeader;
    else if (std::memcmp(id, "MTrk", 4) == 0)
        m_kind = kTrack;
    else
        m_kind = kOther;
    return ReadBigEndian(stream, 4, m_length) && m_kind != kOther;
}

void CMidiChunk::WriteChunkHeader(CMidiFileStream& stream) const
{
    stream.Write(m_id.data(), static_cast<std::uint32_t>(m_id.size()));
    WriteBigEndian(stream, 4, m_length);
}

// A chunk that is no header leaves the header as it was made, all zero.
bool CMidiHeader::Read(CMidiFileStream& stream)
{
    std::uint32_t fields[3] = {};
    bool good = ReadChunkHeader(stream) && m_kind == kHeader;
    for (std::uint32_t& field : fields)
        good = good && ReadBigEndian(stream, 2, field);
    if (!good) {
        Reset();
        return false;
    }
    format = static_cast<std::uint16_t>(fields[0]);
    trackCount = static_cast<std::uint16_t>(fields[1]);
    division = static_cast<std::uint16_t>(fields[2]);
    // The difference as the 32-bit signed distance a file seek takes: a
    // length below 6 moves back. A move before the start ends reading.
    const auto skip = static_cast<std::int32_t>(m_length - kHeaderBodyLength);
    if (skip != 0)
        stream.Seek(skip);
    return true;
}

void CMidiHeader::Write(CMidiFileStream& stream)
{
    m_length = kHeaderBodyLength;
    WriteChunkHeader(stream);
    WriteBigEndian(stream, 2, format);
    WriteBigEndian(stream, 2, trackCount);
    WriteBigEndian(stream, 2, division);
}

} // namespace tarvix
