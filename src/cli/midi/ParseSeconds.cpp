#include "cli/midi/ParseSeconds.h"

#include <charconv>

namespace tarvix::cli {

namespace {
constexpr double kOneDay = 86400;
}

bool ParseSeconds(const std::string& text, const char* what, bool allowZero, double& seconds,
                  std::string& error)
{
    double parsed = -1;
    const char* end = text.data() + text.size();
    const auto [stop, status] = std::from_chars(text.data(), end, parsed, std::chars_format::fixed);
    const bool inRange = (parsed > 0 || (allowZero && parsed == 0)) && parsed <= kOneDay;
    if (text.empty() || status != std::errc{} || stop != end || !inRange) {
        error = "invalid " + std::string(what) + " '" + text + "' (expected seconds, " +
                (allowZero ? "0 or more" : "more than 0") + ")";
        return false;
    }
    seconds = parsed;
    return true;
}

} // namespace tarvix::cli
