#pragma once

// Windows only. The program keeps every name and text in UTF-8; the
// system's wide-character calls take and give UTF-16.

#include <string>
#include <string_view>

namespace tarvix::platform {

// Bytes that are not UTF-8 become U+FFFD rather than failing the call they
// are headed for.
std::wstring WideText(std::string_view utf8);
std::string NarrowText(std::wstring_view utf16);

} // namespace tarvix::platform
