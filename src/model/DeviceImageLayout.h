#pragma once

// Where things live in the device memory image. Pointer tables hold
// big-endian device addresses; the fields inside records are little-endian.
// Both are the device's choice and are kept.

#include <cstdint>
#include <string_view>

namespace tarvix::image {

inline constexpr std::uint32_t kBaseAddress = 1024; // device address of image offset 0
inline constexpr std::uint32_t kPartTable = 0;
inline constexpr std::uint32_t kSongTable = 258;
inline constexpr std::uint32_t kPointerSize = 2;
// A record must start where a pointer can reach it: address 0xFFFF at most.
inline constexpr std::uint32_t kLastRecordOffset = 0xFFFF - kBaseAddress;

// Part record: length, 8 track offsets, BCD length, 8 channels, name, tracks.
// Slot i of the offsets and channels holds model track 7 - i.
inline constexpr std::uint32_t kPartLength = 0;
inline constexpr std::uint32_t kPartTrackOffsets = 2;
inline constexpr std::uint32_t kPartBeats = 18;
inline constexpr std::uint32_t kPartChannels = 20;
inline constexpr std::uint32_t kPartName = 28;
inline constexpr std::uint32_t kPartHeaderSize = 42;

// Song record: length, tempo, name, 2-byte steps, one end byte of 100 or more.
inline constexpr std::uint32_t kSongLength = 0;
inline constexpr std::uint32_t kSongTempo = 2;
inline constexpr std::uint32_t kSongName = 3;
inline constexpr std::uint32_t kSongSteps = 17;
inline constexpr std::uint32_t kEmptySongRecordSize = 18;
// A step's part byte of this value or more ends the step list.
inline constexpr std::uint8_t kStepListEnd = 100;
inline constexpr std::uint8_t kSongEndByte = 0xFF;

inline constexpr std::uint32_t kNameSize = 14;
inline constexpr std::string_view kEmptySongName = " NO SONG NAME ";

inline constexpr int SlotOfTrack(int track)
{
    return 7 - track;
}

} // namespace tarvix::image
