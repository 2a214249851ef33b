#include "transport/ports/ThreadPriority.h"

#if defined(__linux__)
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#elif defined(_WIN32)
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#endif

namespace tarvix {

void RaiseCurrentThreadPriority()
{
#if defined(__linux__)
    // Linux keeps nice values per thread; -1 is "above normal". Without
    // CAP_SYS_NICE the call fails, which is harmless.
    const auto thread = static_cast<id_t>(syscall(SYS_gettid));
    (void)setpriority(PRIO_PROCESS, thread, -1);
#elif defined(_WIN32)
    (void)::SetThreadPriority(::GetCurrentThread(), THREAD_PRIORITY_ABOVE_NORMAL);
#endif
}

} // namespace tarvix
