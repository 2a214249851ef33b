#include "cli/midi/CliTransferView.h"

#include "cli/midi/SignalWatch.h"
#include "cli/midi/Terminal.h"
#include "transport/transfer/SysexTransfer.h"

#include <chrono>
#include <thread>
#include <utility>

namespace tarvix::cli {

namespace {
constexpr auto kTick = std::chrono::milliseconds(100);
// Listing the ports asks the MIDI system; twice a second is soon enough.
constexpr int kTicksPerPortCheck = 5;
} // namespace

CCliTransferView::CCliTransferView(std::FILE* stream, Watch watch)
    : m_printer(stream, IsTerminal(stream)), m_watch(std::move(watch))
{
}

void CCliTransferView::ReportMessage(const std::string& text)
{
    m_printer.Message(text);
}

bool CCliTransferView::RunProgress(CSysexTransfer& transfer)
{
    m_ending = Ending::Running;
    const auto start = std::chrono::steady_clock::now();
    if (!transfer.GetText().empty())
        m_printer.Show(transfer.GetText(), transfer.GetProgressPosition(),
                       transfer.GetProgressRange());
    for (int tick = 1;; ++tick) {
        std::this_thread::sleep_for(kTick);
        if (m_watch.signals.IsStopRequested())
            return End(Ending::Cancelled);
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        if (m_watch.timeoutSeconds && elapsed.count() >= *m_watch.timeoutSeconds)
            return End(Ending::TimedOut);
        if (m_watch.isPortListed && tick % kTicksPerPortCheck == 0 && !m_watch.isPortListed())
            return End(Ending::PortGone);
        const bool over = transfer.Tick();
        m_printer.Show(transfer.GetText(), transfer.GetProgressPosition(),
                       transfer.GetProgressRange());
        if (over)
            return End(Ending::Finished);
    }
}

bool CCliTransferView::End(Ending ending)
{
    m_ending = ending;
    m_printer.Finish();
    return ending == Ending::Finished;
}

} // namespace tarvix::cli
