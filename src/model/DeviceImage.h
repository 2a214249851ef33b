#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace tarvix {

class CByteBuffer;
class CMmt8Memory;

// Replaces every part and song from a device memory image; an empty image
// resets them all. The global block is the caller's to set. Nothing in the
// image is trusted: a record or track that lies outside it loads empty or
// ends where the image ends, and a track without its end mark ends with its
// record, so no part takes more than its record's bytes. Returns the bytes
// the image says it uses.
std::uint32_t LoadImage(CMmt8Memory& memory, std::span<const std::uint8_t> image);

// Lays the document out as a device image: the global block with fresh
// pointer tables, then the part records and the song records back to back,
// so the image is exactly GetMemorySize() bytes. Fails, with a message and
// nothing written, when the document holds what the image cannot carry
// (records beyond the reach of 16-bit pointers, a part over 64 KB).
bool BuildImage(const CMmt8Memory& memory, CByteBuffer& image, std::string& error);

class CMmt8Song;
// True when a song without steps goes into the image as the device's
// empty-song record: an empty song, and one named " NO SONG NAME" too, since
// the device reads that name on a record without steps as "no song".
bool IsWrittenAsEmptySong(const CMmt8Song& song);

} // namespace tarvix
