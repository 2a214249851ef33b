#include "transport/ports/MidiBuffer.h"

namespace tarvix {

namespace {
constexpr std::uintptr_t kFreeFlag = 0x1;
} // namespace

CMidiBuffer::CMidiBuffer(std::uint32_t capacity)
    : MidiHeader{}, m_capacity(capacity), m_data(new std::uint8_t[capacity]{})
{
    data = m_data.get();
    bufferLength = capacity;
    SetFree(true);
}

bool CMidiBuffer::IsFree()
{
    return (std::atomic_ref(user).load(std::memory_order_acquire) & kFreeFlag) != 0;
}

void CMidiBuffer::SetFree(bool free)
{
    std::atomic_ref word(user);
    if (free)
        word.fetch_or(kFreeFlag, std::memory_order_release);
    else
        word.fetch_and(~kFreeFlag, std::memory_order_release);
}

} // namespace tarvix
