#pragma once

namespace tarvix {

// Asks for a slightly higher priority for the calling thread, so that a busy
// user interface does not delay the port workers. Where the system refuses
// (an unprivileged user may not lower a nice value) the thread runs as it is.
void RaiseCurrentThreadPriority();

} // namespace tarvix
