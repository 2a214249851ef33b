#include "CliFixture.h"

#include <filesystem>

namespace tarvix::testing {

void CliTest::SetUp()
{
    std::filesystem::create_directories(folder.Path() / "config");
    environment = {"XDG_CONFIG_HOME=" + (folder.Path() / "config").string()};
}

std::unique_ptr<ChildProcess> CliTest::StartProgram(const Words& command, const std::string& name)
{
    auto process = std::make_unique<ChildProcess>();
    ChildProcess::Options options;
    options.environment = environment;
    options.outPath = folder.File(name + ".out");
    options.errPath = folder.File(name + ".err");
    const bool started = process->Start(command, options);
    EXPECT_TRUE(started) << "could not start " << command.front();
    return process;
}

std::unique_ptr<ChildProcess> CliTest::StartCli(const Words& words, const std::string& name)
{
    Words command{TARVIX_CLI_PATH};
    command.insert(command.end(), words.begin(), words.end());
    return StartProgram(command, name);
}

CliTest::Run CliTest::RunCli(const Words& words)
{
    auto process = StartCli(words, "run" + std::to_string(++m_runs));
    Run run;
    run.exit = process->Wait(kRunLimit);
    run.out = process->ReadOut();
    run.err = process->ReadErr();
    run.description = process->Describe();
    return run;
}

std::unique_ptr<ChildProcess> CliTest::StartReceive(const std::string& from,
                                                    const std::string& output)
{
    // The receive is listening once it prompts for the dump.
    auto receive = StartCli(
        {"receive", "--port", from, "-o", folder.File(output), "--timeout", "60"}, "receive");
    EXPECT_TRUE(receive->WaitForOutput("To start MIDI dump transfer", kShowLimit, true))
        << receive->Describe();
    return receive;
}

std::string CliTest::WriteFile(const std::string& name,
                               const std::vector<std::uint8_t>& bytes) const
{
    const std::string path = folder.File(name);
    WriteAllBytes(path, bytes);
    return path;
}

bool CliTest::NothingWritten(const std::string& name) const
{
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path()))
        if (entry.path().filename().string().rfind(name, 0) == 0)
            return false;
    return true;
}

} // namespace tarvix::testing
