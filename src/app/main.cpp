#include "transport/settings/SettingsKey.h"
#include "ui/Application.h"
#include "ui/ProgramInfo.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QString::fromLatin1(tarvix::kApplicationName));
    QApplication::setOrganizationName(QString::fromLatin1(tarvix::CSettingsKey::kVendorName));

    QStringList arguments = QApplication::arguments();
    arguments.removeFirst();
    tarvix::CApplication tarvix(tarvix::CSettingsKey::ForProgram());
    tarvix.Start(arguments);
    return QApplication::exec();
}
