#pragma once

#include <string>

namespace tarvix::testing {

struct PeerRun {
    int status = -1;
    std::string output;
};

// Runs "mido_peer.py COMMAND PATH" and collects what it printed, errors
// included. The machine's default python3 may lack Debian's packages: the
// peer runs on the system interpreter. A missing mido fails the test, it
// never skips.
PeerRun RunMidoPeer(const std::string& command, const std::string& path);

} // namespace tarvix::testing
