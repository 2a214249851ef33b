#include "cli/midi/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace tarvix::cli {

bool IsTerminal(std::FILE* stream)
{
    return isatty(fileno(stream)) != 0;
}

std::size_t TerminalColumns(std::FILE* stream)
{
    winsize size = {};
    if (ioctl(fileno(stream), TIOCGWINSZ, &size) == 0)
        return size.ws_col;
    return 0;
}

} // namespace tarvix::cli
