#include "cli/CliCommand.h"

#include <string>
#include <vector>

int main(int argc, char** argv)
{
    const std::vector<std::string> words(argv + 1, argv + argc);
    return tarvix::cli::RunCli(words, {stdout, stderr});
}
