// The transfers on a private JACK dummy server, and what the programs do
// without one.
#include "TransferCases.h"

#include "support/JackServer.h"

#include <unistd.h>

namespace tarvix::testing {
namespace {

void UseTestServer(std::vector<std::string>& environment)
{
    static std::unique_ptr<test::JackServer> server;
    if (!test::JackServer::IsInstalled())
        GTEST_SKIP() << "jackd is not installed (scripts/setup.sh installs Debian's jackd2)";
    if (!server) {
        auto started = std::make_unique<test::JackServer>();
        std::string error;
        ASSERT_TRUE(started->Start("tarvix-e2e", error)) << error;
        server = std::move(started);
    }
    environment.push_back("JACK_DEFAULT_SERVER=" + server->GetName());
}

INSTANTIATE_TEST_SUITE_P(Jack, TransferTest, ::testing::Values(E2eRig{"JACK", &UseTestServer, {}}),
                         &RigName);

const std::string kDeviceOut = "JACK: tarvix-device:out";
const std::string kDeviceIn = "JACK: tarvix-device:in";

// No JACK server under the name the programs look for.
class NoServerTest : public CliTest {
protected:
    void SetUp() override
    {
        CliTest::SetUp();
        environment.push_back("JACK_DEFAULT_SERVER=tarvix-e2e-absent-" +
                              std::to_string(::getpid()));
    }
};

TEST_F(NoServerTest, PortsListsNothingForJackAndSaysWhy)
{
    const Run ports = RunCli({"ports"});
    EXPECT_EQ(ports.exit.code, 0) << ports.description;
    EXPECT_EQ(ports.out.find("JACK: "), std::string::npos) << ports.out;
    EXPECT_NE(ports.err.find("JACK: No JACK server is running."), std::string::npos) << ports.err;
}

TEST_F(NoServerTest, TransfersAndTheDeviceFailWithTheReason)
{
    const Run receive = RunCli({"receive", "--port", kDeviceOut, "-o", folder.File("got.syx")});
    EXPECT_EQ(receive.exit.code, 1) << receive.description;
    EXPECT_NE(receive.err.find("JACK: No JACK server is running."), std::string::npos)
        << receive.err;
    EXPECT_TRUE(NothingWritten("got.syx"));

    const Run device = RunCli({"device"});
    EXPECT_EQ(device.exit.code, 1) << device.description;
    EXPECT_NE(device.err.find("JACK: No JACK server is running."), std::string::npos) << device.err;
}

TEST_F(NoServerTest, AReceiveToAFileThatCannotBeWrittenFailsBeforeWaiting)
{
    // No --timeout: were it to wait for the device, the run would hang.
    for (const std::string& path : {folder.File("no-such-folder/got.syx"), folder.File("")}) {
        const Run receive = RunCli({"receive", "--port", kDeviceOut, "-o", path});
        EXPECT_EQ(receive.exit.code, 1) << receive.description;
        EXPECT_NE(receive.err.find("Can't write " + path + ": "), std::string::npos) << receive.err;
        EXPECT_EQ(receive.err.find("JACK"), std::string::npos) << receive.err;
    }
}

TEST_F(NoServerTest, BadArgumentsAreUsageErrors)
{
    const std::vector<Words> cases = {
        {"receive", "-o", "got.syx"},
        {"receive", "--port", kDeviceOut},
        {"receive", "--port", kDeviceOut, "-o", "got.syx", "--timeout", "abc"},
        {"receive", "--port", kDeviceOut, "-o", "got.syx", "--timeout", "0"},
        {"send", "--port", kDeviceIn},
        {"device", "--send-after", "-1"},
        {"device", "--name", "a:b"},
        {"device", "--input-buffer", "0"},
        {"device", "--input-buffer", "4k"},
        {"ports", "extra"},
    };
    for (const Words& words : cases) {
        const Run run = RunCli(words);
        EXPECT_EQ(run.exit.code, 2) << words[0] << ": " << run.description;
        EXPECT_NE(run.err.find("Usage: tarvix-cli " + words[0]), std::string::npos) << run.err;
    }
}

TEST_F(NoServerTest, HelpSaysHowToNamePortsAndWhereThePacingComesFrom)
{
    for (const std::string command : {"receive", "send"}) {
        const Run help = RunCli({command, "--help"});
        EXPECT_EQ(help.exit.code, 0) << help.description;
        EXPECT_NE(help.out.find("'tarvix-cli ports'"), std::string::npos) << help.out;
        EXPECT_NE(help.out.find("MidiOutSyxDelay"), std::string::npos) << help.out;
        EXPECT_NE(help.out.find("Tarvix.conf"), std::string::npos) << help.out;
    }
    for (const std::string command : {"ports", "device"}) {
        const Run help = RunCli({command, "--help"});
        EXPECT_EQ(help.exit.code, 0) << help.description;
        EXPECT_EQ(help.out.rfind("Usage: tarvix-cli " + command, 0), 0u) << help.out;
    }
}

} // namespace
} // namespace tarvix::testing
