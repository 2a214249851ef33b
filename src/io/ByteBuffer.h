#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace tarvix {

// A growable byte buffer. It grows by a quarter of its capacity plus 255
// bytes (at least 255, at least the request) so that many small appends of a
// track listing or a SysEx stream cost few reallocations, while a buffer
// filled in one go gets exactly what it asked for.
class CByteBuffer {
public:
    CByteBuffer() = default;
    CByteBuffer(CByteBuffer&& other) noexcept;
    CByteBuffer& operator=(CByteBuffer&& other) noexcept;
    CByteBuffer(const CByteBuffer&) = delete;
    CByteBuffer& operator=(const CByteBuffer&) = delete;
    ~CByteBuffer() = default;

    // False (and the buffer unchanged) when memory runs out or the size
    // would pass 4 GiB.
    bool Append(const void* bytes, std::uint32_t count);
    bool Append(std::span<const std::uint8_t> bytes);
    bool AppendByte(std::uint8_t value);
    bool AppendText(std::string_view text);

    // Releases the storage; capacity and size become 0.
    void Free();
    // Size 0, storage kept for reuse.
    void Clear() { m_size = 0; }

    const std::uint8_t* GetData() const { return m_data.get(); }
    std::uint8_t* GetData() { return m_data.get(); }
    std::uint32_t GetSize() const { return m_size; }
    std::uint32_t GetCapacity() const { return m_capacity; }
    std::span<const std::uint8_t> View() const { return {m_data.get(), m_size}; }

private:
    std::unique_ptr<std::uint8_t[]> m_data;
    std::uint32_t m_capacity = 0;
    std::uint32_t m_size = 0;
};

} // namespace tarvix
