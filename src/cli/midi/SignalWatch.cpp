#include "cli/midi/SignalWatch.h"

#include "cli/midi/SignalHandlers.h"

#include <atomic>

namespace tarvix::cli {

namespace {
// Set from a signal handler (POSIX) or from the thread the system runs the
// console handler on (Windows): lock-free atomics serve both.
std::atomic<bool> g_stopRequested{false};
std::atomic<bool> g_sendRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free);
} // namespace

namespace signals {
void RequestStop() noexcept
{
    g_stopRequested.store(true);
}

void RequestSend() noexcept
{
    g_sendRequested.store(true);
}
} // namespace signals

CSignalWatch::CSignalWatch(bool watchSendRequest) : m_watchSend(watchSendRequest)
{
    g_stopRequested.store(false);
    g_sendRequested.store(false);
    signals::Install(m_watchSend);
}

CSignalWatch::~CSignalWatch()
{
    signals::Remove(m_watchSend);
}

bool CSignalWatch::IsStopRequested() const
{
    return g_stopRequested.load();
}

bool CSignalWatch::TakeSendRequest()
{
    return g_sendRequested.exchange(false);
}

} // namespace tarvix::cli
