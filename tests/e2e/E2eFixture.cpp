#include "E2eFixture.h"

#include <unistd.h>

namespace tarvix::testing {

std::unique_ptr<test::JackServer> E2eTest::s_server;

void E2eTest::SetUp()
{
    CliTest::SetUp();
    const std::string pid = std::to_string(::getpid());
    if (!m_withServer) {
        serverName = "tarvix-e2e-absent-" + pid;
    } else {
        if (!test::JackServer::IsInstalled())
            GTEST_SKIP() << "jackd is not installed (scripts/setup.sh installs Debian's jackd2)";
        if (!s_server) {
            auto server = std::make_unique<test::JackServer>();
            std::string error;
            ASSERT_TRUE(server->Start("tarvix-e2e", error)) << error;
            s_server = std::move(server);
        }
        serverName = s_server->GetName();
    }
    environment.push_back("JACK_DEFAULT_SERVER=" + serverName);
}

std::unique_ptr<ChildProcess> E2eTest::StartDevice(const Words& options)
{
    Words words{"device"};
    words.insert(words.end(), options.begin(), options.end());
    auto device = StartCli(words, "device");
    EXPECT_TRUE(device->WaitForOutput("Listening on \"" + kDeviceIn + "\"", kShowLimit))
        << device->Describe();
    return device;
}

} // namespace tarvix::testing
