// Writes the near-full memory of the benchmarks as a .syx file, for the
// transfer benchmark: tarvix-make-full-dump OUT.syx
#include "io/FileStream.h"
#include "support/FullMemory.h"

#include <cstdio>
#include <string>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("Usage: tarvix-make-full-dump OUT.syx\n", stderr);
        return 2;
    }
    const tarvix::testing::FullMemory full = tarvix::testing::MakeFullMemory();
    if (!full.problem.empty()) {
        std::fprintf(stderr, "tarvix-make-full-dump: %s\n", full.problem.c_str());
        return 1;
    }
    std::string error;
    if (!tarvix::WriteFileReplacing(argv[1], full.dump.data(),
                                    static_cast<std::uint32_t>(full.dump.size()), error)) {
        std::fputs(error.c_str(), stderr);
        return 1;
    }
    std::printf("%zu bytes, image %u bytes, %zu events\n", full.dump.size(), full.imageBytes,
                full.events);
    return 0;
}
