#include "transport/ports/ThreadPriority.h"

#if defined(__linux__)
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace tarvix {

void RaiseCurrentThreadPriority()
{
#if defined(__linux__)
    // Linux keeps nice values per thread; -1 is "above normal". Without
    // CAP_SYS_NICE the call fails, which is harmless.
    const auto thread = static_cast<id_t>(syscall(SYS_gettid));
    (void)setpriority(PRIO_PROCESS, thread, -1);
#endif
}

} // namespace tarvix
