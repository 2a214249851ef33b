#pragma once

#include "ChildProcess.h"
#include "support/JackServer.h"
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

// The simulated device's ports under its default name.
inline const std::string kDeviceOut = "JACK: tarvix-device:out";
inline const std::string kDeviceIn = "JACK: tarvix-device:in";

// Runs tarvix-cli as separate processes: the simulated device and the
// commands, against a JACK server of the test's own (or, with
// withServer false, against a server name that nothing answers to). The
// user's settings are a fresh folder's; every process is stopped at the end.
class E2eTest : public ::testing::Test {
protected:
    explicit E2eTest(bool withServer = true) : m_withServer(withServer) {}

    void SetUp() override;

    // A command started in the background, its output in the test's folder.
    std::unique_ptr<ChildProcess> StartCli(const Words& words, const std::string& name);
    // A command run to its end.
    struct Run {
        ChildProcess::Exit exit;
        std::string out;
        std::string err;
        std::string description;
    };
    Run RunCli(const Words& words);
    // The device, once its ports are there.
    std::unique_ptr<ChildProcess> StartDevice(const Words& options = {});

    std::string WriteFile(const std::string& name, const std::vector<std::uint8_t>& bytes) const;
    // No file of that name, nor a temporary one of it, in the folder.
    bool NothingWritten(const std::string& name) const;

    TempDir folder;
    std::string serverName;

private:
    bool m_withServer;
    std::vector<std::string> m_environment;
    int m_runs = 0;
    static std::unique_ptr<test::JackServer> s_server;
};

} // namespace tarvix::testing
