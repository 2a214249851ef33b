#pragma once

#include "CliFixture.h"
#include "support/JackServer.h"

#include <memory>
#include <string>

namespace tarvix::testing {

// The simulated device's ports under its default name.
inline const std::string kDeviceOut = "JACK: tarvix-device:out";
inline const std::string kDeviceIn = "JACK: tarvix-device:in";

// tarvix-cli against a JACK server of the test's own (or, with withServer
// false, against a server name that nothing answers to).
class E2eTest : public CliTest {
protected:
    explicit E2eTest(bool withServer = true) : m_withServer(withServer) {}

    void SetUp() override;

    // The device, once its ports are there.
    std::unique_ptr<ChildProcess> StartDevice(const Words& options = {});

    std::string serverName;

private:
    bool m_withServer;
    static std::unique_ptr<test::JackServer> s_server;
};

} // namespace tarvix::testing
