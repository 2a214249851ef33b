#include "model/SysexPacking.h"

namespace tarvix {

namespace {
constexpr std::size_t kGroupData = 8;
constexpr std::size_t kGroupImage = 7;
} // namespace

std::uint32_t UnpackedSize(std::uint32_t packedCount)
{
    return ((packedCount >> 3) + 1) * 7;
}

std::vector<std::uint8_t> UnpackSysexData(std::span<const std::uint8_t> packed, std::uint8_t next)
{
    const auto count = static_cast<std::uint32_t>(packed.size());
    std::vector<std::uint8_t> image(UnpackedSize(count));
    const auto at = [&](std::size_t i) -> unsigned { return i < packed.size() ? packed[i] : next; };
    std::size_t out = 0;
    for (std::size_t group = 0; group < packed.size(); group += kGroupData) {
        const std::size_t bytes = std::min(kGroupImage, packed.size() - group);
        for (std::size_t k = 0; k < bytes; ++k)
            image[out++] = static_cast<std::uint8_t>((at(group + k) << (k + 1)) |
                                                     (at(group + k + 1) >> (6 - k)));
    }
    return image;
}

std::vector<std::uint8_t> PackSysexData(std::span<const std::uint8_t> image)
{
    std::vector<std::uint8_t> packed;
    packed.reserve(image.size() / kGroupImage * kGroupData + kGroupData);
    // Bits flow through an accumulator, most significant first, 7 at a time.
    std::uint32_t bits = 0;
    int held = 0;
    for (const std::uint8_t byte : image) {
        bits = (bits << 8) | byte;
        held += 8;
        while (held >= 7) {
            held -= 7;
            packed.push_back(static_cast<std::uint8_t>((bits >> held) & 0x7F));
        }
        bits &= (1u << held) - 1;
    }
    if (held > 0)
        packed.push_back(static_cast<std::uint8_t>((bits << (7 - held)) & 0x7F));
    return packed;
}

} // namespace tarvix
