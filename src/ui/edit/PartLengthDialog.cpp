#include "ui/edit/PartLengthDialog.h"

#include "model/Mmt8Limits.h"

namespace tarvix {

namespace {
NumberDialogSetup PartLengthSetup()
{
    NumberDialogSetup setup;
    setup.title = QStringLiteral("Part length");
    setup.label = QStringLiteral("Number of &beats in part:");
    setup.minimum = 0;
    setup.maximum = static_cast<int>(kMaxBeats);
    setup.invalidText = QString::asprintf(
        "Invalid beat count value. Please enter an integer between 0 and %d.\n", setup.maximum);
    // The wording is the program's own, spelling included.
    setup.note =
        QStringLiteral("Note: decreasing number of beats delets all part data beyond new end.");
    return setup;
}
} // namespace

CPartLengthDialog::CPartLengthDialog(std::uint32_t beats, QWidget* parent)
    : CNumberDialog(PartLengthSetup(), static_cast<int>(beats), parent)
{
    setObjectName(QStringLiteral("partLengthDialog"));
}

} // namespace tarvix
