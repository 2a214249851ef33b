#pragma once

#include <cstddef>
#include <cstdint>

namespace tarvix {

// How many of the next bytes to send as one event: at most maxLength, and
// ending after an F7 so that no event carries the end of one SysEx and the
// start of the next.
inline std::size_t SysexEventLength(const std::uint8_t* data, std::size_t size,
                                    std::size_t maxLength)
{
    const std::size_t limit = size < maxLength ? size : maxLength;
    for (std::size_t i = 0; i < limit; ++i) {
        if (data[i] == 0xF7) {
            return i + 1;
        }
    }
    return limit;
}

} // namespace tarvix
