#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tarvix {

// The device sends its 8-bit memory as 7-bit MIDI data bytes, most
// significant bit first: every 8 data bytes carry 7 image bytes.

// Bytes of the buffer that unpacking n packed bytes fills (with room to spare).
std::uint32_t UnpackedSize(std::uint32_t packedCount);

// Unpacks packed into an UnpackedSize buffer. A final partial group of r data
// bytes gives r image bytes, the last taking its low bits from the byte that
// follows the group (`next`, the dump's trailing byte).
std::vector<std::uint8_t> UnpackSysexData(std::span<const std::uint8_t> packed,
                                          std::uint8_t next = 0);

// The inverse: 7 image bytes to 8 data bytes; a final group of r image bytes
// gives r + 1 data bytes padded with zero bits.
std::vector<std::uint8_t> PackSysexData(std::span<const std::uint8_t> image);

} // namespace tarvix
