#include "io/platform/WideText.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <limits>

namespace tarvix::platform {

std::wstring WideText(std::string_view utf8)
{
    if (utf8.empty() || utf8.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return {};
    const int size = static_cast<int>(utf8.size());
    const int length = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
    if (length <= 0)
        return {};
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), length);
    return wide;
}

std::string NarrowText(std::wstring_view utf16)
{
    if (utf16.empty() || utf16.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return {};
    const int size = static_cast<int>(utf16.size());
    const int length =
        ::WideCharToMultiByte(CP_UTF8, 0, utf16.data(), size, nullptr, 0, nullptr, nullptr);
    if (length <= 0)
        return {};
    std::string narrow(static_cast<std::size_t>(length), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, utf16.data(), size, narrow.data(), length, nullptr, nullptr);
    return narrow;
}

} // namespace tarvix::platform
