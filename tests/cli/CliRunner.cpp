#include "CliRunner.h"

#include "support/TempDir.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>

extern char** environ;

namespace tarvix::testing {

namespace {
constexpr auto kTimeLimit = std::chrono::seconds(30);

std::string ReadText(const std::string& path)
{
    const auto bytes = ReadAllBytes(path);
    return {bytes.begin(), bytes.end()};
}

// Waits for the child, killing it once the time limit has passed.
void Wait(pid_t child, CliResult& result)
{
    const auto deadline = std::chrono::steady_clock::now() + kTimeLimit;
    int status = 0;
    while (::waitpid(child, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            result.timedOut = true;
            ::kill(child, SIGKILL);
            ::waitpid(child, &status, 0);
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    if (WIFEXITED(status))
        result.exitCode = WEXITSTATUS(status);
    else if (WIFSIGNALED(status))
        result.signal = WTERMSIG(status);
}
} // namespace

CliResult RunTarvixCli(const std::vector<std::string>& words)
{
    // Files rather than pipes: nothing can fill up and stall the child.
    const TempDir streams;
    const std::string outPath = streams.File("stdout");
    const std::string errPath = streams.File("stderr");

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
    posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);

    std::string program = TARVIX_CLI_PATH;
    std::vector<std::string> storage(words);
    std::vector<char*> argv{program.data()};
    for (std::string& word : storage)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    CliResult result;
    pid_t child = 0;
    const int spawnError =
        posix_spawn(&child, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawnError != 0) {
        result.err = "could not start " + program;
        return result;
    }
    Wait(child, result);
    result.out = ReadText(outPath);
    result.err = ReadText(errPath);
    return result;
}

std::string Describe(const CliResult& result)
{
    std::string text = "exit " + std::to_string(result.exitCode);
    if (result.signal != 0)
        text += ", killed by signal " + std::to_string(result.signal);
    if (result.timedOut)
        text += ", timed out";
    return text + "\nstdout: " + result.out + "\nstderr: " + result.err;
}

} // namespace tarvix::testing
