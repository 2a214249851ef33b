#pragma once

#include <cstddef>
#include <cstdio>

// The terminal a stream may be, asked of the system: one implementation file
// per system (PosixTerminal.cpp, WinTerminal.cpp).

namespace tarvix::cli {

// True when stream is a terminal that takes the cursor movements the
// progress display redraws with.
bool IsTerminal(std::FILE* stream);
// The terminal's width in columns; 0 when the system does not say.
std::size_t TerminalColumns(std::FILE* stream);

} // namespace tarvix::cli
