#pragma once

#include <cstdio>
#include <string>

namespace tarvix::fuzzing {

// A broken round trip is a finding like a crash: say what broke, then stop
// so that libFuzzer keeps the input.
[[noreturn]] inline void FailFuzzCheck(const std::string& what)
{
    std::fprintf(stderr, "fuzz check failed: %s\n", what.c_str());
    std::fflush(stderr);
    __builtin_trap();
}

} // namespace tarvix::fuzzing
