#include "MidoPeer.h"

#include <cstdio>
#include <sys/wait.h>

namespace tarvix::testing {

PeerRun RunPeerCommand(const std::string& line)
{
    PeerRun run;
    const std::string both = line + " 2>&1";
    std::FILE* pipe = popen(both.c_str(), "r");
    if (pipe == nullptr)
        return run;
    char buffer[4096];
    std::size_t count = 0;
    while ((count = std::fread(buffer, 1, sizeof buffer, pipe)) != 0)
        run.output.append(buffer, count);
    const int status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

PeerRun RunMidoPeer(const std::string& command, const std::string& path, const std::string& words)
{
    return RunPeerCommand("/usr/bin/python3 '" TARVIX_MIDO_PEER "' " + command + " '" + path +
                          "' " + words);
}

} // namespace tarvix::testing
