#pragma once

#include "io/ByteBuffer.h"

#include <cstdint>
#include <span>

namespace tarvix {

// One SysEx message on its way in or out.
class CSysexMessage {
public:
    // Bytes already handed to the driver; output only.
    std::uint32_t GetOffset() const { return m_offset; }
    void AddOffset(std::uint32_t count) { m_offset += count; }

    CByteBuffer& Bytes() { return m_bytes; }
    const CByteBuffer& Bytes() const { return m_bytes; }
    std::span<const std::uint8_t> View() const { return m_bytes.View(); }
    std::uint32_t GetSize() const { return m_bytes.GetSize(); }

    // F0 first and F7 last: the message has arrived whole.
    bool IsComplete() const;
    bool ContainsSysexEnd() const;

private:
    std::uint32_t m_offset = 0;
    CByteBuffer m_bytes;
};

} // namespace tarvix
