#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

namespace tarvix {

class CMidiBuffer;

// The bounded ring on which the driver's callback thread hands returned
// input buffers to the worker. One slot stays empty to tell full from empty.
class CBufferQueue {
public:
    // Discards everything; room for capacity buffers afterwards.
    void Resize(std::uint32_t capacity);
    // False when the ring is full.
    bool Push(CMidiBuffer* buffer);
    // False when the ring is empty.
    bool Pop(CMidiBuffer*& buffer);

private:
    std::mutex m_mutex;
    std::vector<CMidiBuffer*> m_slots = std::vector<CMidiBuffer*>(1);
    std::size_t m_read = 0;
    std::size_t m_write = 0;
};

} // namespace tarvix
