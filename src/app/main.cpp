#include "settings/SettingsKey.h"
#include "ui/Application.h"
#include "ui/ProgramInfo.h"

#include <QApplication>

#include <cstdio>
#include <cstring>

namespace {
// Words starting with '-' are switches the window ignores, so no file can be
// named "--version" on the command line.
bool AsksForVersion(int argc, char* argv[])
{
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--version") == 0)
            return true;
    return false;
}
} // namespace

int main(int argc, char* argv[])
{
    // Answered before Qt starts, so it works without a display (packaging
    // checks, scripts over ssh).
    if (AsksForVersion(argc, argv)) {
        std::printf("tarvix %s\n", tarvix::kVersionText);
        return std::fflush(stdout) == 0 ? 0 : 1;
    }

    QApplication application(argc, argv);
    QApplication::setApplicationName(QString::fromLatin1(tarvix::kApplicationName));
    QApplication::setOrganizationName(QString::fromLatin1(tarvix::CSettingsKey::kVendorName));
    QApplication::setDesktopFileName(QString::fromLatin1(tarvix::kDesktopFileName));

    QStringList arguments = QApplication::arguments();
    arguments.removeFirst();
    tarvix::CApplication tarvix(tarvix::CSettingsKey::ForProgram());
    tarvix.Start(arguments);
    return QApplication::exec();
}
