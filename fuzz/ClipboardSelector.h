#pragma once

#include "model/ClipboardBlock.h"

#include <cstddef>
#include <cstdint>

namespace tarvix::fuzzing {

// How a paste input starts: a selector byte (the kind in bits 0-1, the
// length of the song steps land in at bits 2-3, as for the record inputs),
// the start slot, then the clipboard block as it would arrive. The fuzzer
// and the seed maker both go through here.
inline constexpr std::size_t kPasteHeaderSize = 2;

inline ClipboardKind PasteKindOfSelector(std::uint8_t selector)
{
    return static_cast<ClipboardKind>((selector & 3u) + 1);
}

inline std::uint8_t MakePasteSelector(ClipboardKind kind, std::size_t lengthChoice = 0)
{
    return static_cast<std::uint8_t>((static_cast<unsigned>(kind) - 1) | (lengthChoice & 3u) << 2);
}

} // namespace tarvix::fuzzing
