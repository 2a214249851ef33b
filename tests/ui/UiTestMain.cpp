#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char* argv[])
{
    // Also when CTest lists the cases, which it does without the tests'
    // environment: never a window on the user's screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tarvix"));
    return RUN_ALL_TESTS();
}
