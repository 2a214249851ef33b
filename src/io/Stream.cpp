#include "io/Stream.h"

#include <cstring>
#include <limits>

namespace tarvix {

namespace {

constexpr std::uint64_t kMaxCount = std::numeric_limits<std::uint32_t>::max();

std::uint32_t DecodeUInt32(const std::uint8_t* bytes)
{
    return std::uint32_t{bytes[0]} | (std::uint32_t{bytes[1]} << 8) |
           (std::uint32_t{bytes[2]} << 16) | (std::uint32_t{bytes[3]} << 24);
}

// Throws unless count bytes lie at offset inside size; 64-bit so that no
// declared length can wrap the sum.
void CheckRange(std::uint64_t offset, std::uint32_t count, std::uint32_t size)
{
    if (offset + count > size) {
        throw CStreamException(
            "CStream::CheckBufferOverrun: buffer overrun, cb=" + std::to_string(count) + "\n");
    }
}

} // namespace

CStream::CStream(const void* bytes, std::uint32_t count)
{
    m_buffer.Append(bytes, count);
    m_reading = bytes != nullptr && count != 0;
}

CStream::CStream(std::span<const std::uint8_t> bytes)
{
    m_buffer.Append(bytes);
    m_reading = bytes.data() != nullptr && !bytes.empty();
}

void CStream::WriteRaw(const void* bytes, std::uint32_t count)
{
    // Writers never fail; running out of memory leaves a short stream that
    // its reader rejects.
    m_buffer.Append(bytes, count);
}

void CStream::WriteUInt32(std::uint32_t value)
{
    const std::uint8_t bytes[4] = {
        static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
        static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 24)};
    WriteRaw(bytes, sizeof bytes);
}

void CStream::WriteByte(std::uint8_t value)
{
    WriteRaw(&value, 1);
}

void CStream::WriteString(const char* text)
{
    const std::size_t length = text != nullptr ? std::strlen(text) : 0;
    if (length > kMaxCount)
        return; // no 32-bit length could describe it
    WriteUInt32(static_cast<std::uint32_t>(length));
    WriteRaw(text, static_cast<std::uint32_t>(length));
}

void CStream::WriteString(const std::string& text)
{
    if (text.size() > kMaxCount)
        return;
    WriteUInt32(static_cast<std::uint32_t>(text.size()));
    WriteRaw(text.data(), static_cast<std::uint32_t>(text.size()));
}

void CStream::WriteBlock(const CByteBuffer& block)
{
    WriteUInt32(block.GetSize());
    WriteRaw(block.GetData(), block.GetSize());
}

void CStream::CheckBufferOverrun(std::uint32_t count) const
{
    CheckRange(m_position, count, m_buffer.GetSize());
}

void CStream::ReadByte(std::uint8_t& value)
{
    CheckBufferOverrun(1);
    value = m_buffer.GetData()[m_position];
    ++m_position;
}

void CStream::ReadUInt32(std::uint32_t& value)
{
    CheckBufferOverrun(4);
    value = DecodeUInt32(m_buffer.GetData() + m_position);
    m_position += 4;
}

void CStream::ReadString(std::string& text)
{
    CheckBufferOverrun(4);
    const std::uint32_t length = DecodeUInt32(m_buffer.GetData() + m_position);
    // Checked before anything is allocated or the position moves, so a
    // malformed length costs nothing.
    CheckRange(std::uint64_t{m_position} + 4, length, m_buffer.GetSize());
    const auto* chars = reinterpret_cast<const char*>(m_buffer.GetData() + m_position + 4);
    text.assign(chars, length);
    m_position += 4 + length;
}

void CStream::ReadBlock(CByteBuffer& block)
{
    CheckBufferOverrun(4);
    const std::uint32_t length = DecodeUInt32(m_buffer.GetData() + m_position);
    CheckRange(std::uint64_t{m_position} + 4, length, m_buffer.GetSize());
    block.Append(m_buffer.GetData() + m_position + 4, length);
    m_position += 4 + length;
}

void CStream::Reset()
{
    m_position = 0;
    m_buffer.Clear();
}

} // namespace tarvix
