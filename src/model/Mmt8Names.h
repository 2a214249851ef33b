#pragma once

#include <string>
#include <string_view>

namespace tarvix {

// Names are cut to 14 characters (ending early at a NUL, as C text would)
// and lose their trailing white space; leading spaces stay.
std::string NormalizeName(std::string_view text);

} // namespace tarvix
