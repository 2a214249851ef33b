#include "cli/CliCommand.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#ifdef _WIN32
#include "io/platform/WideText.h"

#include <fcntl.h>
#include <io.h>
#endif

namespace {
int Run(const std::vector<std::string>& words)
{
    const int status = tarvix::cli::RunCli(words, {stdout, stderr});
    // Output cut short (a full disk, a closed pipe) must not pass for success.
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        std::fprintf(stderr, "tarvix-cli: can't write the output: %s\n", std::strerror(errno));
        return status == 0 ? 1 : status;
    }
    return status;
}
} // namespace

#ifdef _WIN32
// The words arrive in UTF-16 and go on in UTF-8, as every name in the
// program does; the file layer turns them back for the system's calls.
int wmain(int argc, wchar_t** argv)
{
    // Text goes out with LF line ends on every system, as scripts expect;
    // the C library would make them CR LF.
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    std::vector<std::string> words;
    for (int i = 1; i < argc; ++i)
        words.push_back(tarvix::platform::NarrowText(argv[i]));
    return Run(words);
}
#else
int main(int argc, char** argv)
{
    return Run(std::vector<std::string>(argv + 1, argv + argc));
}
#endif
