#include "cli/midi/SignalWatch.h"

namespace tarvix::cli {

namespace {
volatile std::sig_atomic_t g_stopRequested = 0;
volatile std::sig_atomic_t g_sendRequested = 0;

extern "C" void OnSignal(int signal)
{
    if (signal == SIGUSR1)
        g_sendRequested = 1;
    else
        g_stopRequested = 1;
}
} // namespace

CSignalWatch::CSignalWatch(bool watchSendRequest) : m_watchSend(watchSendRequest)
{
    g_stopRequested = 0;
    g_sendRequested = 0;
    struct sigaction action = {};
    action.sa_handler = &OnSignal;
    sigemptyset(&action.sa_mask);
    // No SA_RESTART: a wait in progress ends at once and the flag is seen.
    action.sa_flags = 0;
    for (std::size_t i = 0; i < std::size(kWatched); ++i) {
        if (Watches(kWatched[i]))
            sigaction(kWatched[i], &action, &m_previous[i]);
    }
}

CSignalWatch::~CSignalWatch()
{
    for (std::size_t i = 0; i < std::size(kWatched); ++i) {
        if (Watches(kWatched[i]))
            sigaction(kWatched[i], &m_previous[i], nullptr);
    }
}

bool CSignalWatch::IsStopRequested() const
{
    return g_stopRequested != 0;
}

bool CSignalWatch::TakeSendRequest()
{
    if (g_sendRequested == 0)
        return false;
    g_sendRequested = 0;
    return true;
}

} // namespace tarvix::cli
