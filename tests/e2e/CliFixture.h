#pragma once

#include "support/ChildProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tarvix::testing {

using Words = std::vector<std::string>;

// Generous limits: a hang fails the test, a slow machine does not.
inline constexpr auto kRunLimit = std::chrono::seconds(60);
inline constexpr auto kShowLimit = std::chrono::seconds(20);

// Runs the built tarvix-cli (and other programs) as separate processes in
// the test's own folder, with a fresh folder for the user's settings;
// every process is stopped at the end.
class CliTest : public ::testing::Test {
protected:
    void SetUp() override;

    // Any program, started in the background, its output in the folder.
    std::unique_ptr<ChildProcess> StartProgram(const Words& command, const std::string& name);
    std::unique_ptr<ChildProcess> StartCli(const Words& words, const std::string& name);
    // A command run to its end.
    struct Run {
        ChildProcess::Exit exit;
        std::string out;
        std::string err;
        std::string description;
    };
    Run RunCli(const Words& words);
    // A receive from the port into the folder, once it listens.
    std::unique_ptr<ChildProcess> StartReceive(const std::string& from, const std::string& output);

    std::string WriteFile(const std::string& name, const std::vector<std::uint8_t>& bytes) const;
    // No file of that name, nor a temporary one of it, in the folder.
    bool NothingWritten(const std::string& name) const;

    TempDir folder;
    // "NAME=value" entries every program gets on top of the test's own.
    std::vector<std::string> environment;

private:
    int m_runs = 0;
};

} // namespace tarvix::testing
