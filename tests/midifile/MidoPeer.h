#pragma once

#include <string>

namespace tarvix::testing {

struct PeerRun {
    int status = -1;
    std::string output;
};

// Runs a shell command line and collects what it printed on both outputs.
PeerRun RunPeerCommand(const std::string& line);

// Runs "mido_peer.py COMMAND PATH" and collects what it printed, errors
// included. The machine's default python3 may lack Debian's packages: the
// peer runs on the system interpreter. A missing mido fails the test, it
// never skips.
// Words after the path, if any, are passed as they stand.
PeerRun RunMidoPeer(const std::string& command, const std::string& path,
                    const std::string& words = {});

} // namespace tarvix::testing
