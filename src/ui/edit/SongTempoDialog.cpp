#include "ui/edit/SongTempoDialog.h"

#include "model/Mmt8Limits.h"

namespace tarvix {

namespace {
NumberDialogSetup SongTempoSetup()
{
    NumberDialogSetup setup;
    setup.title = QStringLiteral("Song tempo");
    setup.label = QStringLiteral("&Beats per minute:");
    setup.minimum = static_cast<int>(kMinTempo);
    setup.maximum = static_cast<int>(kMaxTempo);
    setup.invalidText =
        QString::asprintf("Invalid song tempo value. Please enter an integer between %d and %d.\n",
                          setup.minimum, setup.maximum);
    return setup;
}
} // namespace

CSongTempoDialog::CSongTempoDialog(std::uint32_t tempo, QWidget* parent)
    : CNumberDialog(SongTempoSetup(), static_cast<int>(tempo), parent)
{
    setObjectName(QStringLiteral("songTempoDialog"));
}

} // namespace tarvix
