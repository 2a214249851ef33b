#include "ui/AboutDialog.h"

#include "framework/HyperlinkLabel.h"
#include "ui/ProgramInfo.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QUrl>
#include <QVBoxLayout>

namespace tarvix {

QString AboutVersionText()
{
    return QString::fromLatin1(kProductName) +
           QString::asprintf(" v%u.%02u (build %u)", kVersionMajor, kVersionMinor, kBuildNumber);
}

bool LeadsSomewhere(const QUrl& url)
{
    QString host = url.host().toLower();
    if (url.scheme() == QStringLiteral("mailto"))
        host = url.path().section(QLatin1Char('@'), 1).toLower();
    if (host.isEmpty())
        return false;
    for (const char* reserved : {".example", ".invalid", ".test", ".localhost"})
        if (host.endsWith(QLatin1String(reserved)) || host == QLatin1String(reserved + 1))
            return false;
    return true;
}

CAboutDialog::CAboutDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("aboutDialog"));
    setWindowTitle(tr("About %1").arg(QString::fromLatin1(kProductName)));
    auto* layout = new QHBoxLayout(this);
    auto* icon = new QLabel(this);
    icon->setObjectName(QStringLiteral("programIcon"));
    icon->setPixmap(QIcon(QStringLiteral(":/icons/tarvix.svg")).pixmap(64, 64));
    layout->addWidget(icon, 0, Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    layout->addLayout(texts, 1);

    auto* version = new QLabel(AboutVersionText(), this);
    version->setObjectName(QStringLiteral("versionText"));
    auto* copyright = new QLabel(QString::fromUtf8(kLegalCopyright), this);
    copyright->setObjectName(QStringLiteral("copyrightText"));
    texts->addWidget(version);
    texts->addWidget(copyright);
    const QUrl web(QString::fromLatin1(kWebPage));
    if (LeadsSomewhere(web)) {
        auto* link = new CHyperlinkLabel(web.toString(), web, this);
        link->setObjectName(QStringLiteral("webLink"));
        texts->addWidget(link);
    }
    const QUrl mail(QStringLiteral("mailto:") + QString::fromLatin1(kMailAddress));
    if (LeadsSomewhere(mail)) {
        auto* link = new CHyperlinkLabel(QString::fromLatin1(kMailAddress), mail, this);
        link->setObjectName(QStringLiteral("mailLink"));
        texts->addWidget(link);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    texts->addStretch(1);
    texts->addWidget(buttons);
}

} // namespace tarvix
