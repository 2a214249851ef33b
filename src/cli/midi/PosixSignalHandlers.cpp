#include "cli/midi/SignalHandlers.h"

#include <csignal>
#include <iterator>

namespace tarvix::cli::signals {

namespace {
constexpr int kWatched[] = {SIGINT, SIGTERM, SIGUSR1};
struct sigaction g_previous[std::size(kWatched)] = {};

bool Watches(int signal, bool watchSend)
{
    return signal != SIGUSR1 || watchSend;
}

extern "C" void OnSignal(int signal)
{
    if (signal == SIGUSR1)
        RequestSend();
    else
        RequestStop();
}
} // namespace

void Install(bool watchSend)
{
    struct sigaction action = {};
    action.sa_handler = &OnSignal;
    sigemptyset(&action.sa_mask);
    // No SA_RESTART: a wait in progress ends at once and the flag is seen.
    action.sa_flags = 0;
    for (std::size_t i = 0; i < std::size(kWatched); ++i) {
        if (Watches(kWatched[i], watchSend))
            sigaction(kWatched[i], &action, &g_previous[i]);
    }
}

void Remove(bool watchSend)
{
    for (std::size_t i = 0; i < std::size(kWatched); ++i) {
        if (Watches(kWatched[i], watchSend))
            sigaction(kWatched[i], &g_previous[i], nullptr);
    }
}

} // namespace tarvix::cli::signals
