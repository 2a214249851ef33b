#include "cli/midi/Terminal.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <io.h>
#include <windows.h>

namespace tarvix::cli {

namespace {
HANDLE Console(std::FILE* stream)
{
    return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
}
} // namespace

bool IsTerminal(std::FILE* stream)
{
    // A console that cannot be switched to the terminal sequences (before
    // Windows 10) gets plain lines, like a file.
    const HANDLE console = Console(stream);
    DWORD mode = 0;
    if (!::GetConsoleMode(console, &mode))
        return false;
    return (mode & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0 ||
           ::SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != FALSE;
}

std::size_t TerminalColumns(std::FILE* stream)
{
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!::GetConsoleScreenBufferInfo(Console(stream), &info))
        return 0;
    return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

} // namespace tarvix::cli
