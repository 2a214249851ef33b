#include "support/FileTestSupport.h"

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#endif

namespace tarvix::testing {

std::string SystemText(int code)
{
#ifdef _WIN32
    char text[512] = {};
    ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                     static_cast<DWORD>(code), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), text,
                     sizeof text, nullptr);
    std::string line;
    for (const char* c = text; *c != '\0'; ++c)
        if (*c != '\r' && *c != '\n')
            line += *c;
    return line;
#else
    return std::strerror(code);
#endif
}

} // namespace tarvix::testing
