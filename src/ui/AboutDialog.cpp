#include "ui/AboutDialog.h"

#include "framework/HyperlinkLabel.h"
#include "ui/ProgramInfo.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

namespace tarvix {

QString AboutVersionText()
{
    return QString::fromLatin1(kProductName)
           + QString::asprintf(" v%u.%02u (build %u)", kVersionMajor, kVersionMinor, kBuildNumber);
}

CAboutDialog::CAboutDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("aboutDialog"));
    setWindowTitle(tr("About %1").arg(QString::fromLatin1(kProductName)));
    auto* layout = new QVBoxLayout(this);

    auto* version = new QLabel(AboutVersionText(), this);
    version->setObjectName(QStringLiteral("versionText"));
    auto* copyright = new QLabel(QString::fromUtf8(kLegalCopyright), this);
    copyright->setObjectName(QStringLiteral("copyrightText"));
    auto* web = new CHyperlinkLabel(QString::fromLatin1(kWebPage), QUrl(QString::fromLatin1(kWebPage)), this);
    web->setObjectName(QStringLiteral("webLink"));
    auto* mail = new CHyperlinkLabel(QString::fromLatin1(kMailAddress),
                                     QUrl(QStringLiteral("mailto:") + QString::fromLatin1(kMailAddress)), this);
    mail->setObjectName(QStringLiteral("mailLink"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    layout->addWidget(version);
    layout->addWidget(copyright);
    layout->addWidget(web);
    layout->addWidget(mail);
    layout->addWidget(buttons);
}

} // namespace tarvix
