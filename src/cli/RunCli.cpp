#include "cli/CliCommand.h"
#include "cli/CliSupport.h"
#include "version/Version.h"

#include <algorithm>
#include <cstring>

namespace tarvix::cli {

namespace {
const OptionSpec* FindOption(const std::vector<OptionSpec>& options, const std::string& name)
{
    const auto found = std::find_if(options.begin(), options.end(),
                                    [&](const OptionSpec& option) { return name == option.name; });
    return found == options.end() ? nullptr : &*found;
}

void PrintCommandHelp(const ICliCommand& command, std::FILE* out)
{
    std::fprintf(out, "Usage: %s\n\n%s\n", UsageLine(command).c_str(), command.Summary());
    if (*command.Details() != '\0')
        std::fprintf(out, "\n%s\n", command.Details());
    const auto options = command.Options();
    if (!options.empty())
        std::fputs("\nOptions:\n", out);
    for (const OptionSpec& option : options)
        std::fprintf(out, "  %-16s %s\n", option.name, option.help);
}

void PrintOverview(std::FILE* out)
{
    std::fputs("Usage: tarvix-cli COMMAND [ARGUMENTS]\n\n"
               "Reads and writes Alesis MMT-8 memory dumps (.syx).\n"
               "Parts and songs are numbered 0-99, tracks 1-8, steps from 1.\n\n"
               "Commands:\n",
               out);
    for (const auto& command : AllCommands())
        std::fprintf(out, "  %-10s %s\n", command->Name(), command->Summary());
    std::fputs("\nAn option's value is the next word, or for a long option follows '='\n"
               "(--tempo=90). Each option is given at most once.\n"
               "Run 'tarvix-cli COMMAND --help' for a command's arguments,\n"
               "'tarvix-cli --version' for the version.\n",
               out);
}

bool IsOptionWord(const std::string& word)
{
    return word.size() > 1 && word[0] == '-';
}

int ParseAndRun(const ICliCommand& command, std::span<const std::string> words,
                const CliOutput& output)
{
    const auto options = command.Options();
    ParsedArguments arguments;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == "--help" || word == "-h") {
            PrintCommandHelp(command, output.out);
            return kExitSuccess;
        }
        if (!IsOptionWord(word)) {
            arguments.positionals.push_back(word);
            continue;
        }
        // "--name=value" is the same as "--name value"; a short option keeps
        // its value in the next word.
        const std::size_t equals = word.rfind("--", 0) == 0 ? word.find('=') : std::string::npos;
        const std::string name = word.substr(0, equals);
        const OptionSpec* option = FindOption(options, name);
        if (!option)
            return UsageError(command, "unknown option '" + name + "'", output);
        // A second value would silently replace the first: refuse it.
        if (arguments.Has(name))
            return UsageError(command, "option '" + name + "' is given more than once", output);
        if (equals != std::string::npos) {
            if (!option->takesValue)
                return UsageError(command, "option '" + name + "' takes no value", output);
            arguments.options[name] = word.substr(equals + 1);
            continue;
        }
        if (option->takesValue && i + 1 >= words.size())
            return UsageError(command, "option '" + name + "' needs a value", output);
        arguments.options[name] = option->takesValue ? words[++i] : std::string{};
    }
    const std::size_t expected = command.PositionalNames().size();
    if (arguments.positionals.size() != expected)
        return UsageError(command,
                          "expected " + std::to_string(expected) + " argument(s), got " +
                              std::to_string(arguments.positionals.size()),
                          output);
    for (const OptionSpec& option : options)
        if (option.required && !arguments.Has(option.name))
            return UsageError(command, std::string("option '") + option.name + "' is required",
                              output);
    return command.Run(arguments, output);
}
} // namespace

int RunCli(std::span<const std::string> words, const CliOutput& output)
{
    if (words.empty()) {
        PrintOverview(output.err);
        return kExitUsage;
    }
    if (words[0] == "--help" || words[0] == "-h" || words[0] == "help") {
        PrintOverview(output.out);
        return kExitSuccess;
    }
    if (words[0] == "--version") {
        std::fprintf(output.out, "tarvix-cli %s\n", kVersionText);
        return kExitSuccess;
    }
    for (const auto& command : AllCommands())
        if (words[0] == command->Name())
            return ParseAndRun(*command, words.subspan(1), output);
    std::fprintf(output.err,
                 "tarvix-cli: unknown command '%s'\nRun 'tarvix-cli --help' for the list.\n",
                 words[0].c_str());
    return kExitUsage;
}

} // namespace tarvix::cli
