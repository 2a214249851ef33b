#include "midifile/ImportClock.h"

#include "model/Mmt8Limits.h"

namespace tarvix {

namespace {
constexpr std::uint64_t kDivisionWhenZero = 120;
} // namespace

std::uint64_t TicksToClocks(std::uint64_t ticks, std::uint16_t division)
{
    const std::uint64_t divisor = division == 0 ? kDivisionWhenZero : division;
    const std::uint64_t scaled = ticks * kClocksPerBeat;
    const std::uint64_t clocks = scaled / divisor;
    const std::uint64_t remainder = scaled % divisor;
    return remainder * 2 > divisor ? clocks + 1 : clocks;
}

} // namespace tarvix
