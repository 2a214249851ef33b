#include "cli/midi/SignalHandlers.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

namespace tarvix::cli::signals {

namespace {
// The system calls this on a thread of its own. Closing the console, logging
// off and shutting down are left to the next handler: the system ends the
// program after them whatever a handler answers.
BOOL WINAPI OnConsoleEvent(DWORD event)
{
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        return FALSE;
    RequestStop();
    return TRUE;
}
} // namespace

// Windows has no request to send (SIGUSR1), so watchSend changes nothing.
void Install(bool /*watchSend*/)
{
    ::SetConsoleCtrlHandler(&OnConsoleEvent, TRUE);
}

void Remove(bool /*watchSend*/)
{
    ::SetConsoleCtrlHandler(&OnConsoleEvent, FALSE);
}

} // namespace tarvix::cli::signals
