// Files that do not load, targets that cannot be written, and usage errors.
#include "CliDocuments.h"
#include "CliRunner.h"

#include "model/Mmt8Memory.h"
#include "support/FileTestSupport.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <optional>
#include <random>

namespace tarvix::testing {

namespace {
using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::string>;

Bytes Prefix(const Bytes& bytes, std::size_t count)
{
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

Bytes Garbage()
{
    std::mt19937 random(7);
    Bytes bytes(2000);
    for (auto& byte : bytes)
        byte = static_cast<std::uint8_t>(random() & 0x7F);
    return bytes;
}

// Every command that reads a document, given the file to read.
std::vector<Words> ReadingCommands(const std::string& path, const std::string& output)
{
    return {{"memory", path},
            {"parts", path},
            {"songs", path},
            {"tracks", path, "0"},
            {"steps", path, "0"},
            {"list", path, "0", "1"},
            {"rewrite", path, "-o", output}};
}

struct BadInput {
    const char* name;
    std::optional<Bytes> bytes; // none: the file does not exist
    const char* message;        // followed by the path and a line end
};

std::vector<BadInput> BadInputs()
{
    const Bytes dump = DemoDump();
    Bytes withoutEnd = dump;
    withoutEnd.pop_back();
    Bytes foreignFirst = {0xF0, 0x43, 0x10, 0x4C, 0xF7};
    foreignFirst.insert(foreignFirst.end(), dump.begin(), dump.end());
    Bytes textFirst = {'d', 'u', 'm', 'p', '\n'};
    textFirst.insert(textFirst.end(), dump.begin(), dump.end());
    return {
        {"Missing", std::nullopt, "Can't open file: "},
        // An empty file cannot be mapped, so it fails as the open.
        {"Empty", Bytes{}, "Can't open file: "},
        {"NoEndByte", withoutEnd, "Invalid sysex file: "},
        {"Truncated", Prefix(dump, dump.size() / 2), "Invalid sysex file: "},
        {"ForeignMessageFirst", foreignFirst, "Invalid sysex file: "},
        {"TextBeforeTheDump", textFirst, "Invalid sysex file: "},
        {"HeaderCutShort", Bytes{0xF0, 0x00, 0x00, 0x0E, 0xF7}, "Invalid sysex file: "},
        {"Garbage", Garbage(), "Invalid sysex file: "},
    };
}

// Test names come from the case, not from its bytes.
void PrintTo(const BadInput& input, std::ostream* out)
{
    *out << input.name;
}

class CliBadInputTest : public ::testing::TestWithParam<BadInput> {};
} // namespace

TEST_P(CliBadInputTest, FailsWithTheMessageAndPrintsNothing)
{
    const BadInput& input = GetParam();
    const TempDir folder;
    const std::string path = folder.File("input.syx");
    const std::string output = folder.File("out.syx");
    if (input.bytes)
        WriteAllBytes(path, *input.bytes);
    for (const Words& words : ReadingCommands(path, output)) {
        SCOPED_TRACE(words[0]);
        const CliResult result = RunTarvixCli(words);
        EXPECT_EQ(result.exitCode, 1) << Describe(result);
        EXPECT_EQ(result.err, input.message + path + "\n");
        EXPECT_EQ(result.out, "");
    }
    EXPECT_FALSE(std::filesystem::exists(output));
}

INSTANTIATE_TEST_SUITE_P(Cli, CliBadInputTest, ::testing::ValuesIn(BadInputs()),
                         [](const auto& test) { return std::string(test.param.name); });

// Damaged dumps that are still complete messages: the loader trusts the
// records, so whatever it makes of them it must end normally.
TEST(CliDamagedDumpTest, EndsNormallyOnAnyDamage)
{
    const Bytes dump = DemoDump();
    std::vector<Bytes> damaged;
    for (std::size_t length = 1; length < dump.size(); length += 29) {
        Bytes cut = Prefix(dump, length);
        cut.push_back(0xF7);
        damaged.push_back(std::move(cut));
    }
    std::mt19937 random(11);
    for (int i = 0; i < 40; ++i) {
        Bytes changed = dump;
        for (int j = 0; j < 8; ++j)
            changed[5 + std::size_t{random()} % (dump.size() - 7)] =
                static_cast<std::uint8_t>(random() & 0x7F);
        damaged.push_back(std::move(changed));
    }
    const TempDir folder;
    const std::string path = folder.File("damaged.syx");
    for (std::size_t i = 0; i < damaged.size(); ++i) {
        WriteAllBytes(path, damaged[i]);
        for (const Words& words : {Words{"parts", path}, Words{"list", path, "3", "4"}}) {
            const CliResult result = RunTarvixCli(words);
            // A sanitizer's report also exits 1, so the message is checked too.
            const bool loaded = result.exitCode == 0 && result.err.empty();
            const bool refused =
                result.exitCode == 1 && result.err == "Invalid sysex file: " + path + "\n";
            EXPECT_TRUE(loaded || refused)
                << "damaged dump " << i << ", " << words[0] << ": " << Describe(result);
        }
    }
}

TEST(CliWriteFailureTest, TargetInAMissingFolder)
{
    const TempDir folder;
    const std::string input = folder.File("demo.syx");
    WriteAllBytes(input, DemoDump());
    const std::string target = folder.File("missing/out.syx");
    for (const Words& words : {Words{"rewrite", input, "-o", target}, Words{"new", "-o", target}}) {
        const CliResult result = RunTarvixCli(words);
        EXPECT_EQ(result.exitCode, 1) << Describe(result);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, FileMessage("write", target, ENOENT));
    }
    EXPECT_EQ(FolderEntries(folder.Path()), std::set<std::string>{"demo.syx"});
}

TEST(CliWriteFailureTest, TargetThatIsAFolderIsLeftAsItWas)
{
    const TempDir folder;
    const std::string input = folder.File("demo.syx");
    WriteAllBytes(input, DemoDump());
    const std::string target = folder.File("out.syx");
    std::filesystem::create_directory(target);
    WriteAllBytes(folder.File("out.syx/keep"), {1, 2, 3});

    const CliResult result = RunTarvixCli({"rewrite", input, "-o", target});
    EXPECT_EQ(result.exitCode, 1) << Describe(result);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, FileMessage("write", target, EISDIR));
    EXPECT_EQ(ReadAllBytes(folder.File("out.syx/keep")), (Bytes{1, 2, 3}));
    EXPECT_EQ(FolderEntries(folder.Path()), (std::set<std::string>{"demo.syx", "out.syx"}));
}

TEST(CliWriteFailureTest, DocumentNoDumpCanCarryLeavesTheTargetAlone)
{
    const TempDir folder;
    CMmt8Memory memory;
    BuildDocumentOfSize(memory, 64300);
    const std::string input = folder.File("shared.syx");
    const std::string target = folder.File("out.syx");
    WriteAllBytes(input, DumpSharingPartZero(memory));
    WriteAllBytes(target, {0xF0, 0x7D, 0xF7});
    const std::uint32_t size = 512 + kPartCount * memory.GetPartSize(0) + 18;

    const CliResult result = RunTarvixCli({"rewrite", input, "-o", target});
    EXPECT_EQ(result.exitCode, 1) << Describe(result);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err.rfind("The memory uses " + std::to_string(size) + " bytes", 0), 0u)
        << result.err;
    EXPECT_TRUE(result.err.ends_with("nothing was written.\n")) << result.err;
    EXPECT_EQ(ReadAllBytes(target), (Bytes{0xF0, 0x7D, 0xF7}));
    EXPECT_EQ(FolderEntries(folder.Path()), (std::set<std::string>{"out.syx", "shared.syx"}));
}

TEST(CliWriteFailureTest, InputThatDoesNotLoadLeavesTheTargetAlone)
{
    const TempDir folder;
    const std::string input = folder.File("bad.syx");
    const std::string target = folder.File("out.syx");
    WriteAllBytes(input, {0xF0, 0x01, 0x02});
    WriteAllBytes(target, {0xF0, 0x7D, 0xF7});
    const CliResult result = RunTarvixCli({"rewrite", input, "-o", target});
    EXPECT_EQ(result.exitCode, 1) << Describe(result);
    EXPECT_EQ(result.err, "Invalid sysex file: " + input + "\n");
    EXPECT_EQ(ReadAllBytes(target), (Bytes{0xF0, 0x7D, 0xF7}));
}

namespace {
struct UsageCase {
    Words words; // "@FILE" is a loadable dump, "@MISSING" no file, "@OUT" a target
    const char* mentions;
};

void PrintTo(const UsageCase& usage, std::ostream* out)
{
    *out << "tarvix-cli";
    for (const std::string& word : usage.words)
        *out << " '" << word << "'";
}

class CliUsageTest : public ::testing::TestWithParam<UsageCase> {};
} // namespace

TEST_P(CliUsageTest, ExitsWithTwoAndSaysWhy)
{
    const TempDir folder;
    const std::string file = folder.File("demo.syx");
    const std::string out = folder.File("out.syx");
    WriteAllBytes(file, DemoDump());
    const std::map<std::string, std::string> places = {
        {"@FILE", file}, {"@MISSING", folder.File("missing.syx")}, {"@OUT", out}};
    Words words = GetParam().words;
    for (std::string& word : words)
        if (places.count(word))
            word = places.at(word);

    const CliResult result = RunTarvixCli(words);
    EXPECT_EQ(result.exitCode, 2) << Describe(result);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find(GetParam().mentions), std::string::npos) << result.err;
    const bool command = !words.empty() && std::ranges::count(kCliCommands, words[0]) != 0;
    if (command) {
        EXPECT_NE(result.err.find("Usage: tarvix-cli " + words[0]), std::string::npos)
            << result.err;
    }
    EXPECT_FALSE(std::filesystem::exists(out));
}

INSTANTIATE_TEST_SUITE_P(
    Cli, CliUsageTest,
    ::testing::Values(
        UsageCase{{}, "Usage: tarvix-cli COMMAND"}, UsageCase{{"frobnicate"}, "'frobnicate'"},
        UsageCase{{"memory"}, "argument"}, UsageCase{{"parts", "@FILE", "extra"}, "argument"},
        UsageCase{{"tracks", "@FILE"}, "argument"}, UsageCase{{"list", "@FILE", "0"}, "argument"},
        UsageCase{{"tracks", "@FILE", "100"}, "'100'"},
        UsageCase{{"steps", "@FILE", "100"}, "'100'"}, UsageCase{{"steps", "@FILE", "-1"}, "'-1'"},
        UsageCase{{"tracks", "@FILE", "abc"}, "'abc'"},
        UsageCase{{"tracks", "@FILE", "+5"}, "'+5'"}, UsageCase{{"tracks", "@FILE", "5x"}, "'5x'"},
        UsageCase{{"tracks", "@FILE", ""}, "''"}, UsageCase{{"list", "@FILE", "100", "1"}, "'100'"},
        UsageCase{{"list", "@FILE", "0", "0"}, "track '0'"},
        UsageCase{{"list", "@FILE", "0", "9"}, "track '9'"},
        UsageCase{{"list", "@FILE", "abc", "1"}, "'abc'"},
        // The arguments are checked before the file is opened.
        UsageCase{{"list", "@MISSING", "0", "9"}, "track '9'"}, UsageCase{{"new"}, "'-o'"},
        UsageCase{{"new", "-o"}, "'-o'"}, UsageCase{{"new", "-o", "@OUT", "stray"}, "argument"},
        UsageCase{{"new", "-o", "@OUT", "-x"}, "'-x'"}, UsageCase{{"rewrite", "@FILE"}, "'-o'"},
        UsageCase{{"rewrite", "@FILE", "-o"}, "'-o'"},
        UsageCase{{"parts", "@FILE", "--verbose"}, "'--verbose'"},
        UsageCase{{"parts", "@FILE", "--verbose=1"}, "unknown option '--verbose'"},
        // A repeated option would silently take its last value.
        UsageCase{{"new", "-o", "@OUT", "-o", "@OUT"}, "option '-o' is given more than once"},
        UsageCase{{"export", "@FILE", "-o", "@OUT", "--part", "1", "--part=2"},
                  "option '--part' is given more than once"},
        UsageCase{{"export", "@FILE", "-o", "@OUT", "--all-parts", "--all-parts"},
                  "option '--all-parts' is given more than once"},
        UsageCase{{"export", "@FILE", "-o", "@OUT", "--all-parts=yes"},
                  "option '--all-parts' takes no value"}));

TEST(CliHelpTest, EveryCommandAnswersHelp)
{
    for (const std::string& name : kCliCommands) {
        const CliResult result = RunTarvixCli({name, "--help"});
        EXPECT_EQ(result.exitCode, 0) << name << ": " << Describe(result);
        EXPECT_EQ(result.out.rfind("Usage: tarvix-cli " + name, 0), 0u) << result.out;
        EXPECT_EQ(result.err, "");
    }
}

TEST(CliHelpTest, HelpNamesEveryCommand)
{
    const CliResult result = RunTarvixCli({"--help"});
    EXPECT_EQ(result.exitCode, 0) << Describe(result);
    EXPECT_EQ(result.err, "");
    for (const std::string& name : kCliCommands)
        EXPECT_NE(result.out.find("\n  " + name + " "), std::string::npos) << name;
}

} // namespace tarvix::testing
