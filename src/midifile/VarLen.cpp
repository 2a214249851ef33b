#include "midifile/VarLen.h"

#include "midifile/MidiFileStream.h"

namespace tarvix {

namespace {
constexpr std::uint32_t kMaxReadBytes = 3;
constexpr std::uint32_t kMaxWriteGroups = 4;
} // namespace

std::uint32_t ReadVarLen(CMidiFileStream& stream, std::uint32_t& value)
{
    value = 0;
    std::uint32_t count = 0;
    while (count < kMaxReadBytes) {
        std::uint8_t byte = 0;
        if (!stream.ReadByte(byte)) {
            value = kVarLenFailed;
            return count;
        }
        ++count;
        value = (value << 7) | (byte & 0x7Fu);
        if ((byte & 0x80) == 0)
            break;
    }
    return count;
}

std::uint32_t WriteVarLen(CMidiFileStream& stream, std::uint32_t value)
{
    std::uint8_t groups[kMaxWriteGroups];
    std::uint32_t count = 0;
    do {
        groups[count] = static_cast<std::uint8_t>((value & 0x7F) | (count == 0 ? 0 : 0x80));
        value >>= 7;
        ++count;
    } while (value != 0 && count < kMaxWriteGroups);

    std::uint8_t bytes[kMaxWriteGroups];
    for (std::uint32_t i = 0; i < count; ++i)
        bytes[i] = groups[count - 1 - i];
    stream.Write(bytes, count);
    return count;
}

} // namespace tarvix
