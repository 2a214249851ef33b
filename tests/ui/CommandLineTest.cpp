#include "ui/CommandLine.h"

#include <gtest/gtest.h>

namespace tarvix {
namespace {

TEST(CommandLineTest, OptionsAreSkippedAndQuotedNamesKeepTheirSpaces)
{
    EXPECT_EQ(ParseCommandLine(QStringLiteral("-x \"C:\\a b.syx\" c.syx")),
              (QStringList{QStringLiteral("C:\\a b.syx"), QStringLiteral("c.syx")}));
    EXPECT_EQ(ParseCommandLine(QStringLiteral("  /nologo   a.syx\t-q b.syx ")),
              (QStringList{QStringLiteral("a.syx"), QStringLiteral("b.syx")}));
    EXPECT_TRUE(ParseCommandLine(QString()).isEmpty());
    EXPECT_TRUE(ParseCommandLine(QStringLiteral("-a /b")).isEmpty());
}

TEST(CommandLineTest, UnterminatedQuoteOpensNothingForItsToken)
{
    EXPECT_EQ(ParseCommandLine(QStringLiteral("a.syx \"b c.syx")), QStringList{QStringLiteral("a.syx")});
    EXPECT_EQ(ParseCommandLine(QStringLiteral("\"\"")), QStringList{QString()});
}

TEST(CommandLineTest, ArgumentsOfTheSystemBecomeFileNamesUnlessOptions)
{
    const QString text = CommandLineFromArguments(
        {QStringLiteral("--verbose"), QStringLiteral("/home/me/my songs.syx"), QStringLiteral("x.syx")});
    EXPECT_EQ(ParseCommandLine(text),
              (QStringList{QStringLiteral("/home/me/my songs.syx"), QStringLiteral("x.syx")}));
}

} // namespace
} // namespace tarvix
