#pragma once

#include "ui/PendingCommands.h"

#include <QString>

class QWidget;

namespace tarvix {

class CMmt8Memory;
class CSettings;
class CTrackDumpView;

// File > Import...: the tracks of a Standard MIDI File into the parts or
// songs the command was given, through the "MIDI File Import" dialog. A
// selection with nothing to import into is said so and ends the command.
class CImportCommand {
public:
    // With a file (one dropped on the window) the dialog opens on it
    // instead of asking. True when the document changed: it is then marked
    // modified and the caller redraws the views.
    static bool Run(QWidget* parent, CMmt8Memory& memory, const CSettings& settings,
                    const CTrackDumpView& view, const PaneCommandContext& context,
                    const QString& file = {});
};

} // namespace tarvix
