#include "model/BlankImage.h"

#include <string_view>

namespace tarvix {

namespace {
constexpr std::string_view kDisplayText = "SENDING OUT DATA"
                                          "TO MIDI.........";
static_assert(kDisplayText.size() == 32);

constexpr std::array<std::uint8_t, kGlobalBlockSize> MakeBlankImage()
{
    std::array<std::uint8_t, kGlobalBlockSize> image{};
    const std::size_t start = kGlobalBlockSize - kDisplayText.size();
    for (std::size_t i = 0; i < kDisplayText.size(); ++i)
        image[start + i] = static_cast<std::uint8_t>(kDisplayText[i]);
    return image;
}
} // namespace

constexpr std::array<std::uint8_t, kGlobalBlockSize> kMmt8InitData = MakeBlankImage();

} // namespace tarvix
