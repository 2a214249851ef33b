#pragma once

namespace tarvix {

// Held while a JACK client opens, so that this program's processes open
// their clients one at a time, on whatever server.
//
// libjack names the socket on which a new client first hears from its
// server after the client alone (/dev/shm/jack_NAME_UID_0), not after the
// server, and binds it by unlinking whatever was there. Two processes
// opening clients of one name at once, even on two servers, take that
// socket from each other: one server then reaches the other process, and
// both opens are refused, or one succeeds with a client that never hears
// from its server. The socket is gone again by the time jack_client_open
// returns (the server waits for the new client to answer before it says
// yes), so the lock need not outlive the call.
class CJackClientOpenLock {
public:
    // Waits a bounded while for the other holder; a holder that is stuck
    // that long is left to its fate and the open goes ahead unlocked.
    CJackClientOpenLock();
    ~CJackClientOpenLock();
    CJackClientOpenLock(const CJackClientOpenLock&) = delete;
    CJackClientOpenLock& operator=(const CJackClientOpenLock&) = delete;

private:
    int m_fd = -1;
};

} // namespace tarvix
