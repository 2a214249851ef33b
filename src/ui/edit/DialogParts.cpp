#include "ui/edit/DialogParts.h"

#include <QDialog>
#include <QDialogButtonBox>

namespace tarvix {

QDialogButtonBox* CreateOkCancelButtons(QDialog& dialog)
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    buttons->setObjectName(QStringLiteral("buttonBox"));
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    return buttons;
}

QString NumberedName(int number, const std::string& name)
{
    // Names are the device's bytes, not UTF-8.
    return QStringLiteral("%1 ").arg(number, 2, 10, QLatin1Char('0')) +
           QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
}

} // namespace tarvix
