#pragma once

#include <cstdint>

namespace tarvix {

class CMidiFileStream;

// The value ReadVarLen gives when the bytes ran out. A genuine 65535 read
// from a file is taken for it too; readers treat both as a failed read.
inline constexpr std::uint32_t kVarLenFailed = 0xFFFF;

// Reads a variable-length quantity of at most three bytes (21 bits): after
// three bytes with the high bit set the quantity ends anyway, and the next
// byte belongs to what follows. Returns the number of bytes consumed.
std::uint32_t ReadVarLen(CMidiFileStream& stream, std::uint32_t& value);

// Writes at most four 7-bit groups (28 bits; higher bits are dropped).
// Returns the number of bytes written.
std::uint32_t WriteVarLen(CMidiFileStream& stream, std::uint32_t value);

} // namespace tarvix
