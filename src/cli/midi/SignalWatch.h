#pragma once

#include <csignal>
#include <iterator>

namespace tarvix::cli {

// What the user asks by signal while a transfer or the device runs: Ctrl+C
// (SIGINT) and SIGTERM stop it; SIGUSR1, when watched, asks the simulated
// device to send. The handlers only set flags, which the program reads at
// its next tick. The previous handlers come back when the object goes.
class CSignalWatch {
public:
    explicit CSignalWatch(bool watchSendRequest = false);
    ~CSignalWatch();
    CSignalWatch(const CSignalWatch&) = delete;
    CSignalWatch& operator=(const CSignalWatch&) = delete;

    bool IsStopRequested() const;
    // True once for each run of SIGUSR1s since the last call.
    bool TakeSendRequest();

private:
    static constexpr int kWatched[] = {SIGINT, SIGTERM, SIGUSR1};

    bool Watches(int signal) const { return signal != SIGUSR1 || m_watchSend; }

    bool m_watchSend;
    struct sigaction m_previous[std::size(kWatched)] = {};
};

} // namespace tarvix::cli
