#include "io/ByteBuffer.h"

#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace tarvix {

namespace {
constexpr std::uint32_t kMinGrowth = 255;
constexpr std::uint32_t kQuarterGrowthFrom = 1020;
constexpr std::uint64_t kMaxBytes = std::numeric_limits<std::uint32_t>::max();
} // namespace

CByteBuffer::CByteBuffer(CByteBuffer&& other) noexcept
    : m_data(std::move(other.m_data)), m_capacity(std::exchange(other.m_capacity, 0)),
      m_size(std::exchange(other.m_size, 0))
{
}

CByteBuffer& CByteBuffer::operator=(CByteBuffer&& other) noexcept
{
    if (this != &other) {
        m_data = std::move(other.m_data);
        m_capacity = std::exchange(other.m_capacity, 0);
        m_size = std::exchange(other.m_size, 0);
    }
    return *this;
}

bool CByteBuffer::Append(const void* bytes, std::uint32_t count)
{
    if (count == 0)
        return true;
    if (bytes == nullptr)
        return false;
    const std::uint64_t needed = std::uint64_t{m_size} + count;
    if (needed > kMaxBytes)
        return false;

    if (!m_data || needed > m_capacity) {
        std::uint64_t growth = kMinGrowth;
        if (m_capacity > kQuarterGrowthFrom)
            growth = m_capacity / 4 + kMinGrowth;
        if (count > growth)
            growth = count;
        // The growth may pass 4 GiB while the bytes themselves still fit.
        const std::uint64_t wanted = std::uint64_t{m_size} + growth;
        const auto capacity = static_cast<std::uint32_t>(wanted > kMaxBytes ? kMaxBytes : wanted);

        std::unique_ptr<std::uint8_t[]> data(new (std::nothrow) std::uint8_t[capacity]);
        if (!data)
            return false;
        if (m_size != 0)
            std::memcpy(data.get(), m_data.get(), m_size);
        m_data = std::move(data);
        m_capacity = capacity;
    }

    std::memcpy(m_data.get() + m_size, bytes, count);
    m_size += count;
    return true;
}

bool CByteBuffer::Append(std::span<const std::uint8_t> bytes)
{
    if (bytes.size() > kMaxBytes)
        return false;
    return Append(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

bool CByteBuffer::AppendByte(std::uint8_t value)
{
    return Append(&value, 1);
}

bool CByteBuffer::AppendText(std::string_view text)
{
    if (text.size() > kMaxBytes)
        return false;
    return Append(text.data(), static_cast<std::uint32_t>(text.size()));
}

void CByteBuffer::Free()
{
    m_data.reset();
    m_capacity = 0;
    m_size = 0;
}

} // namespace tarvix
