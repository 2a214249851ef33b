#include "CliRunner.h"

#include "support/ChildProcess.h"
#include "support/TempDir.h"

namespace tarvix::testing {

namespace {
constexpr auto kTimeLimit = std::chrono::seconds(30);
} // namespace

CliResult RunTarvixCli(const std::vector<std::string>& words)
{
    // Files rather than pipes: nothing can fill up and stall the child.
    const TempDir streams;
    ChildProcess::Options options;
    options.outPath = streams.File("stdout");
    options.errPath = streams.File("stderr");
    options.inputPipe = false;
    std::vector<std::string> command{TARVIX_CLI_PATH};
    command.insert(command.end(), words.begin(), words.end());

    CliResult result;
    ChildProcess process;
    if (!process.Start(command, options)) {
        result.err = "could not start " + command.front();
        return result;
    }
    const ChildProcess::Exit exit = process.Wait(kTimeLimit);
    result.exitCode = exit.code;
    result.signal = exit.signal;
    result.timedOut = exit.timedOut;
    result.out = process.ReadOut();
    result.err = process.ReadErr();
    return result;
}

std::string Describe(const CliResult& result)
{
    return ChildProcess::Describe({result.exitCode, result.signal, result.timedOut}, result.out,
                                  result.err);
}

} // namespace tarvix::testing
