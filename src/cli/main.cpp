#include "cli/CliCommand.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

int main(int argc, char** argv)
{
#ifdef _WIN32
    // Text goes out with LF line ends on every system, as scripts expect;
    // the C library would make them CR LF.
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
#endif
    const std::vector<std::string> words(argv + 1, argv + argc);
    const int status = tarvix::cli::RunCli(words, {stdout, stderr});
    // Output cut short (a full disk, a closed pipe) must not pass for success.
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        std::fprintf(stderr, "tarvix-cli: can't write the output: %s\n", std::strerror(errno));
        return status == 0 ? 1 : status;
    }
    return status;
}
