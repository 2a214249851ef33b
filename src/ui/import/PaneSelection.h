#pragma once

#include "midifile/MidiSelection.h"
#include "ui/PendingCommands.h"

#include <optional>

namespace tarvix {

// What the import and the export act on, from where the command was given:
// a node of the tree, or the rows of the list the node shows. None when no
// node is selected.
std::optional<MidiSelection> MidiSelectionFor(const PaneCommandContext& context);

} // namespace tarvix
