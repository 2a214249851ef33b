#pragma once

#include <array>
#include <cstdint>

namespace tarvix {

inline constexpr std::uint8_t kSysexStart = 0xF0;
inline constexpr std::uint8_t kSysexEnd = 0xF7;

// F0, the Alesis maker id 00 00 0E, then 00: the start of every memory dump.
inline constexpr std::array<std::uint8_t, 5> kDumpHeader = {0xF0, 0x00, 0x00, 0x0E, 0x00};
// Header, one trailing data byte, F7.
inline constexpr std::size_t kDumpOverhead = 7;
// The trailing data byte we send; the loader reads it only as padding bits.
inline constexpr std::uint8_t kDumpTrailingByte = 0x00;

} // namespace tarvix
