#pragma once

#include "ui/PendingCommands.h"

class QWidget;

namespace tarvix {

class CMmt8Memory;

// File > Export...: the parts or songs the command was given, written as a
// Standard MIDI File the user names. A selection with nothing to export is
// said so before any file is asked for; a file that cannot be written is
// reported with the system's reason.
class CExportCommand {
public:
    static void Run(QWidget* parent, const CMmt8Memory& memory, const PaneCommandContext& context);
};

} // namespace tarvix
