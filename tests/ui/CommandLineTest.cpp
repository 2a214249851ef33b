#include "ui/CommandLine.h"

#include <QDir>

#include <gtest/gtest.h>

namespace tarvix {
namespace {

TEST(CommandLineTest, OptionsAreSkippedAndNamesPassUnchanged)
{
    const QString quoted = QStringLiteral("my \"best\" S\u00fc\u00dfe.syx");
    EXPECT_EQ(FileNamesFromArguments({QStringLiteral("--verbose"), quoted, QString(),
                                      QStringLiteral("-"), QStringLiteral("x.syx")}),
              (QStringList{quoted, QStringLiteral("x.syx")}));
    // "/" begins an absolute path where it is the separator, an option elsewhere.
    const QStringList slash = FileNamesFromArguments({QStringLiteral("/home/me/a.syx")});
    if (QDir::separator() == QLatin1Char('/'))
        EXPECT_EQ(slash, QStringList{QStringLiteral("/home/me/a.syx")});
    else
        EXPECT_TRUE(slash.isEmpty());
}

} // namespace
} // namespace tarvix
