#pragma once

#include "cli/CliCommand.h"

#include <string>

namespace tarvix {
class CMmt8Memory;
enum class ListKind;
} // namespace tarvix

namespace tarvix::cli {

// Numbers as the user sees them: parts and songs 0-99 ("5" or "05"),
// tracks 1-8, steps counted from 1. On failure the message names the value.
bool ParseNumber(const std::string& text, const char* what, int lowest, int highest, int& value,
                 std::string& error);

// Loads a .syx file, printing the program's message on failure.
bool LoadDocument(CMmt8Memory& memory, const std::string& path, const CliOutput& output);
// Saves through a temporary file, printing the program's message on failure.
bool SaveDocument(const CMmt8Memory& memory, const std::string& path, const CliOutput& output);

// Prints a list as the list view shows it: the column titles, then a row a
// line, cells separated by TAB.
void PrintList(const CMmt8Memory& memory, ListKind kind, int index, const CliOutput& output);

// "tarvix-cli NAME ARGUMENTS [OPTIONS]".
std::string UsageLine(const ICliCommand& command);
// Prints "tarvix-cli NAME: message" and the usage line on stderr; returns kExitUsage.
int UsageError(const ICliCommand& command, const std::string& message, const CliOutput& output);

} // namespace tarvix::cli
