#include "ui/edit/DialogParts.h"

#include "ui/DeviceText.h"

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
    return QStringLiteral("%1 ").arg(number, 2, 10, QLatin1Char('0')) + FromDeviceText(name);
}

} // namespace tarvix
