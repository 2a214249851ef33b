#pragma once

#include "ui/CommandId.h"
#include "ui/undo/DocumentHistory.h"

namespace tarvix {

// The kind of undo step a command makes; null for the commands that never
// change the document.
const UndoStepKind* UndoStepFor(CommandId id);

// Confirming the song step properties dialog, which no command starts.
extern const UndoStepKind kStepPropertiesStep;

} // namespace tarvix
