#include "cli/CliSupport.h"

#include "model/ListCells.h"
#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"

#include <charconv>

namespace tarvix::cli {

bool ParseNumber(const std::string& text, const char* what, int lowest, int highest, int& value,
                 std::string& error)
{
    int parsed = 0;
    const char* end = text.data() + text.size();
    const auto [stop, status] = std::from_chars(text.data(), end, parsed);
    if (text.empty() || status != std::errc{} || stop != end || parsed < lowest ||
        parsed > highest) {
        error = "invalid " + std::string(what) + " '" + text + "' (expected " +
                std::to_string(lowest) + " to " + std::to_string(highest) + ")";
        return false;
    }
    value = parsed;
    return true;
}

bool LoadDocument(CMmt8Memory& memory, const std::string& path, const CliOutput& output)
{
    std::string error;
    if (LoadSyxFile(memory, path, error))
        return true;
    std::fputs(error.c_str(), output.err);
    return false;
}

bool SaveDocument(const CMmt8Memory& memory, const std::string& path, const CliOutput& output)
{
    std::string error;
    if (SaveSyxFile(memory, path, error))
        return true;
    std::fputs(error.c_str(), output.err);
    return false;
}

void PrintList(const CMmt8Memory& memory, ListKind kind, int index, const CliOutput& output)
{
    const auto& columns = GetListColumns(kind);
    std::string line;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        line += column == 0 ? "" : "\t";
        line += columns[column].title;
    }
    std::fprintf(output.out, "%s\n", line.c_str());
    const int rows = GetListRowCount(memory, kind, index);
    for (int row = 0; row < rows; ++row) {
        line.clear();
        for (std::size_t column = 0; column < columns.size(); ++column) {
            line += column == 0 ? "" : "\t";
            line += GetListCellText(memory, kind, index, row, static_cast<int>(column));
        }
        std::fprintf(output.out, "%s\n", line.c_str());
    }
}

std::string UsageLine(const ICliCommand& command)
{
    std::string line = std::string("tarvix-cli ") + command.Name();
    for (const char* positional : command.PositionalNames())
        line += std::string(" ") + positional;
    for (const OptionSpec& option : command.Options())
        line += std::string(" ") + (option.required ? "" : "[") + option.name +
                (option.takesValue ? " VALUE" : "") + (option.required ? "" : "]");
    return line;
}

int UsageError(const ICliCommand& command, const std::string& message, const CliOutput& output)
{
    std::fprintf(output.err, "tarvix-cli %s: %s\nUsage: %s\n", command.Name(), message.c_str(),
                 UsageLine(command).c_str());
    return kExitUsage;
}

} // namespace tarvix::cli
