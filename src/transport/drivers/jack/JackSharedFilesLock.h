#pragma once

namespace tarvix {

// Held while this program's processes do what touches the files that all
// JACK servers and clients of a user share, whatever the server: a client
// opening or closing, a server starting or stopping (the tests start
// many). libjack leaves those files unguarded:
// - The socket on which a new client first hears from its server is named
//   after the client alone (/dev/shm/jack_NAME_UID_0), and bound by
//   unlinking whatever was there. Two processes opening clients of one
//   name at once, even on two servers, take it from each other: one server
//   reaches the other process, and both opens are refused, or one succeeds
//   with a client that never hears from its server. The socket is gone
//   again by the time jack_client_open returns.
// - The metadata database (/dev/shm/jack_db-UID), which the first client
//   of a process and every server open, the last client closes, and every
//   server removes as it stops. One doing so while another opens it gets a
//   bus error or a crash, in a client or in jackd.
class CJackSharedFilesLock {
public:
    // Waits a bounded while for the other holder; a holder that is stuck
    // that long is left to its fate and the caller goes ahead unlocked.
    CJackSharedFilesLock();
    ~CJackSharedFilesLock();
    CJackSharedFilesLock(const CJackSharedFilesLock&) = delete;
    CJackSharedFilesLock& operator=(const CJackSharedFilesLock&) = delete;

private:
    int m_fd = -1;
};

} // namespace tarvix
