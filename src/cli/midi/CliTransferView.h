#pragma once

#include "cli/midi/ProgressPrinter.h"
#include "transport/transfer/TransferView.h"

#include <cstdio>
#include <functional>
#include <optional>

namespace tarvix::cli {

class CSignalWatch;

// The command line's progress display of a transfer: it ticks the transfer
// every 100 ms, shows its text and progress on stderr, and ends it early on
// Ctrl+C or SIGTERM, at the time-out, or when the device's port is gone.
class CCliTransferView : public ITransferView {
public:
    enum class Ending { Running, Finished, Cancelled, TimedOut, PortGone };

    struct Watch {
        const CSignalWatch& signals;
        std::optional<double> timeoutSeconds;
        // False once the device's port has left the list.
        std::function<bool()> isPortListed;
    };

    CCliTransferView(std::FILE* stream, Watch watch);

    void ReportMessage(const std::string& text) override;
    bool RunProgress(CSysexTransfer& transfer) override;

    Ending GetEnding() const { return m_ending; }

private:
    bool End(Ending ending);

    CProgressPrinter m_printer;
    Watch m_watch;
    Ending m_ending = Ending::Running;
};

} // namespace tarvix::cli
