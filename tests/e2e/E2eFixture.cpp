#include "E2eFixture.h"

#include <filesystem>
#include <unistd.h>

namespace tarvix::testing {

std::unique_ptr<test::JackServer> E2eTest::s_server;

void E2eTest::SetUp()
{
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
    std::filesystem::create_directories(folder.Path() / "config");
    m_environment = {"JACK_DEFAULT_SERVER=" + serverName,
                     "XDG_CONFIG_HOME=" + (folder.Path() / "config").string()};
}

std::unique_ptr<ChildProcess> E2eTest::StartCli(const Words& words, const std::string& name)
{
    Words command{TARVIX_CLI_PATH};
    command.insert(command.end(), words.begin(), words.end());
    auto process = std::make_unique<ChildProcess>();
    const bool started = process->Start(command, m_environment, folder.File(name + ".out"),
                                        folder.File(name + ".err"));
    EXPECT_TRUE(started) << "could not start " << TARVIX_CLI_PATH;
    return process;
}

E2eTest::Run E2eTest::RunCli(const Words& words)
{
    auto process = StartCli(words, "run" + std::to_string(++m_runs));
    Run run;
    run.exit = process->Wait(kRunLimit);
    run.out = process->ReadOut();
    run.err = process->ReadErr();
    run.description = process->Describe();
    return run;
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

std::string E2eTest::WriteFile(const std::string& name, const std::vector<std::uint8_t>& bytes) const
{
    const std::string path = folder.File(name);
    WriteAllBytes(path, bytes);
    return path;
}

bool E2eTest::NothingWritten(const std::string& name) const
{
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path()))
        if (entry.path().filename().string().rfind(name, 0) == 0)
            return false;
    return true;
}

} // namespace tarvix::testing
