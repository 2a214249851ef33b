#pragma once

namespace tarvix::cli {

// What the user asks while a transfer or the device runs: Ctrl+C stops it
// (as do SIGTERM on POSIX systems and Ctrl+Break on Windows); SIGUSR1, when
// watched and where the system has it, asks the simulated device to send.
// The handlers only set flags, which the program reads at its next tick.
// The previous handlers come back when the object goes.
class CSignalWatch {
public:
    explicit CSignalWatch(bool watchSendRequest = false);
    ~CSignalWatch();
    CSignalWatch(const CSignalWatch&) = delete;
    CSignalWatch& operator=(const CSignalWatch&) = delete;

    bool IsStopRequested() const;
    // True once for each run of send requests since the last call.
    bool TakeSendRequest();

private:
    bool m_watchSend;
};

} // namespace tarvix::cli
