#pragma once

#include <string>
#include <vector>

namespace tarvix::testing {

// What one run of the built tarvix-cli left behind.
struct CliResult {
    // The exit status, or -1 when the program did not exit by itself.
    int exitCode = -1;
    // The signal that ended it, 0 when it exited.
    int signal = 0;
    bool timedOut = false;
    std::string out;
    std::string err;
};

// Runs tarvix-cli with these words, stdin empty. A run that does not end
// within the time limit is killed, so a hang fails the test instead of
// blocking the suite.
CliResult RunTarvixCli(const std::vector<std::string>& words);

// The run, worded for a failure message.
std::string Describe(const CliResult& result);

} // namespace tarvix::testing
