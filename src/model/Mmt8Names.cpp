#include "model/Mmt8Names.h"

#include "model/Mmt8Limits.h"

#include <algorithm>

namespace tarvix {

std::string NormalizeName(std::string_view text)
{
    text = text.substr(0, std::min(text.find('\0'), kMaxNameLength));
    const auto last = text.find_last_not_of(" \t\n\v\f\r");
    return std::string(last == std::string_view::npos ? std::string_view{}
                                                      : text.substr(0, last + 1));
}

} // namespace tarvix
