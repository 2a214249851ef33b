#pragma once

#include <cstdint>

namespace tarvix {

// The device's fixed dimensions. None of them is configurable: they are what
// the MMT-8's firmware and memory image can hold.
inline constexpr int kPartCount = 100;
inline constexpr int kSongCount = 100;
inline constexpr int kTracksPerPart = 8;
inline constexpr int kMaxSteps = 255;
inline constexpr std::size_t kMaxNameLength = 14;

inline constexpr std::uint32_t kClocksPerBeat = 96;
// 682 x 96 = 65472, the longest whole-beat part whose clocks fit 16 bits.
inline constexpr std::uint32_t kMaxBeats = 682;

inline constexpr std::uint32_t kMinTempo = 20;
inline constexpr std::uint32_t kMaxTempo = 255;
inline constexpr std::uint32_t kDefaultTempo = 120;

inline constexpr std::uint8_t kMaxTrackChannel = 16; // 0 keeps the events' own channels
inline constexpr std::uint8_t kAllTracksMask = 0xFF;

inline constexpr std::uint32_t kMmt8MemoryCapacity = 64256;
inline constexpr std::uint32_t kGlobalBlockSize = 512;

} // namespace tarvix
