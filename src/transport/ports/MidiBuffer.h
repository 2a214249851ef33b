#pragma once

#include "transport/drivers/MidiDriver.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace tarvix {

// A driver buffer: the header the driver sees, then the capacity and the
// data area allocated with it. Bit 0 of the header's user word says whether
// the program may use the buffer (1) or the driver holds it (0).
class CMidiBuffer : public MidiHeader {
public:
    // Zeroed, with its data area, free.
    explicit CMidiBuffer(std::uint32_t capacity);

    // The buffer a header handed back by the driver belongs to; the driver
    // only ever sees headers of CMidiBuffer objects.
    static CMidiBuffer* FromHeader(MidiHeader* header) { return static_cast<CMidiBuffer*>(header); }

    std::uint32_t GetCapacity() const { return m_capacity; }

    // The flag is set by the driver's callback thread and cleared by the
    // worker without a common lock, hence atomic access to the user word.
    bool IsFree();
    void SetFree(bool free);

private:
    std::uint32_t m_capacity;
    std::unique_ptr<std::uint8_t[]> m_data;
};

} // namespace tarvix
