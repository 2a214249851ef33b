#pragma once

#include <cstdio>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tarvix::cli {

// Exit statuses every command keeps to.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;

struct OptionSpec {
    const char* name; // "-o", "--timeout"
    bool takesValue;
    const char* help;
    bool required = false;
};

struct ParsedArguments {
    std::vector<std::string> positionals;
    std::map<std::string, std::string> options; // flags map to ""

    bool Has(const std::string& option) const { return options.count(option) != 0; }
    const std::string& Value(const std::string& option) const { return options.at(option); }
};

// Where a command writes: text to out, the program's messages to err.
struct CliOutput {
    std::FILE* out;
    std::FILE* err;
};

// One tarvix-cli command. The dispatcher parses and checks the arguments
// against Options() and PositionalNames() and answers --help, so a command
// only does its work.
class ICliCommand {
public:
    virtual ~ICliCommand() = default;
    virtual const char* Name() const = 0;
    virtual const char* Summary() const = 0;
    // More for the command's --help, after the summary; empty for none.
    virtual const char* Details() const { return ""; }
    virtual std::vector<const char*> PositionalNames() const = 0;
    virtual std::vector<OptionSpec> Options() const { return {}; }
    // Returns an exit status. Bad values in well-formed arguments (a part
    // number of 100) are usage errors: the command prints why and returns
    // kExitUsage.
    virtual int Run(const ParsedArguments& arguments, const CliOutput& output) const = 0;
};

const std::vector<std::unique_ptr<ICliCommand>>& AllCommands();

// Runs tarvix-cli with the words after the program name.
int RunCli(std::span<const std::string> words, const CliOutput& output);

} // namespace tarvix::cli
