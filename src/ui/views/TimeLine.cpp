#include "ui/views/TimeLine.h"

#include "model/TextBuilder.h"

namespace tarvix {

std::string DescribePosition(std::uint32_t clock)
{
    const std::uint32_t beat = clock / kClocksPerBeat;
    const std::uint32_t rest = clock % kClocksPerBeat;
    std::string text =
        FormatText("bar %u beat %u", beat / kBeatsPerBar + 1, beat % kBeatsPerBar + 1);
    if (rest != 0)
        text += FormatText(" + %u clocks", rest);
    return text;
}

} // namespace tarvix
