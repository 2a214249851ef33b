#pragma once

#include "io/ByteBuffer.h"

#include <cstdint>
#include <exception>
#include <span>
#include <string>
#include <utility>

namespace tarvix {

// Thrown when a read would pass the end of a CStream. Readers of outside
// bytes (the clipboard) catch it to reject a malformed block as a whole.
class CStreamException : public std::exception {
public:
    explicit CStreamException(std::string message) : m_message(std::move(message)) {}
    const std::string& GetMessage() const { return m_message; }
    const char* what() const noexcept override { return m_message.c_str(); }

private:
    std::string m_message;
};

// Little-endian serialization stream over a CByteBuffer. A stream built over
// existing bytes reads them; a stream built empty is written. Persistence code
// asks IsWriting() so that one function both writes and reads a record and
// the two directions can never drift apart.
class CStream {
public:
    // An empty stream, open for writing.
    CStream() = default;
    // Copies the bytes; the stream reads them when there are any.
    CStream(const void* bytes, std::uint32_t count);
    explicit CStream(std::span<const std::uint8_t> bytes);

    bool IsWriting() const { return !m_reading; }

    void WriteUInt32(std::uint32_t value);
    void WriteByte(std::uint8_t value);
    void WriteString(const char* text);
    void WriteString(const std::string& text);
    void WriteBlock(const CByteBuffer& block);

    // Each reader throws CStreamException, reading nothing, when the stream
    // holds fewer bytes than it needs.
    void ReadByte(std::uint8_t& value);
    void ReadUInt32(std::uint32_t& value);
    void ReadString(std::string& text);
    // Appends the block's bytes to the given buffer.
    void ReadBlock(CByteBuffer& block);
    void CheckBufferOverrun(std::uint32_t count) const;

    // Position and size to 0; storage kept.
    void Reset();
    // Position to 0 only.
    void Rewind() { m_position = 0; }

    std::uint32_t GetPosition() const { return m_position; }
    const CByteBuffer& GetBuffer() const { return m_buffer; }
    std::span<const std::uint8_t> View() const { return m_buffer.View(); }

private:
    void WriteRaw(const void* bytes, std::uint32_t count);

    CByteBuffer m_buffer;
    std::uint32_t m_position = 0;
    bool m_reading = false;
};

} // namespace tarvix
