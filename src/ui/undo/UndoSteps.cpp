#include "ui/undo/UndoSteps.h"

namespace tarvix {

namespace {
struct CommandStep {
    CommandId id;
    UndoStepKind kind;
};

const CommandStep kCommandSteps[] = {
    // Init leaves an unmodified document, but undoing it brings back one
    // that no file holds.
    {kCmdInit, {"Init", true, true}},
    {kCmdReceive, {"Receive"}},
    {kCmdImport, {"Import"}},
    {kCmdPaste, {"Paste"}},
    {kCmdRename, {"Rename"}},
    {kCmdDelete, {"Delete"}},
    {kCmdInsertStep, {"Insert Step"}},
    {kCmdIncrement, {"Increment"}},
    {kCmdDecrement, {"Decrement"}},
    // Assigning parts to a song never marks the document; its undo and redo
    // do not either.
    {kCmdAssign, {"Assign", false}},
    {kCmdPartBeats, {"Beat Count"}},
    {kCmdTrackChannel, {"Channel"}},
    {kCmdSongTempo, {"Tempo"}},
};
} // namespace

const UndoStepKind kStepPropertiesStep{"Step Properties"};

const UndoStepKind* UndoStepFor(CommandId id)
{
    for (const CommandStep& step : kCommandSteps)
        if (step.id == id)
            return &step.kind;
    return nullptr;
}

} // namespace tarvix
