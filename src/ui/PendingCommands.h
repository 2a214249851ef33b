#pragma once

#include "ui/CommandId.h"
#include "ui/CommandState.h"
#include "ui/Node.h"

#include <vector>

namespace tarvix {

// Where a command meets the pane it was routed to.
struct PaneCommandContext {
    Pane pane = Pane::None;
    Node node;                     // CurrentNode
    std::vector<int> selectedRows; // list rows in rising order; empty for the tree
};

// The commands and views whose subsystems are not wired to the window yet:
// the transfers, Options, the MIDI file dump, import and export, the edit
// commands and dialogs, the clipboard, the track dump view and the step
// properties dialog. The frame and the panes route to these hooks; every
// default does nothing, so the commands exist, enable and route as they
// will, but have no effect until their subsystem overrides the hook.
class CPendingCommands {
public:
    virtual ~CPendingCommands() = default;

    // Frame commands.
    virtual void Receive() {}
    virtual void Send() {}
    // page 0 General, 1 MIDI; focusControl 0 or the control to focus.
    virtual void ShowOptions(int /*page*/, int /*focusControl*/) {}
    virtual void MidiFileDump() {}

    // Pane commands: Import, Export, Copy, Paste, Delete and the list's
    // edit commands (Insert, Increment, Decrement, Assign, Beats, Channel,
    // Tempo).
    virtual void PaneCommand(CommandId /*id*/, const PaneCommandContext& /*context*/) {}
    // Whether the clipboard holds the records a paste of this kind reads.
    virtual bool ClipboardHasRecords(Pane /*pane*/, NodeKind /*kind*/) const { return false; }

    // Row activation in the list.
    virtual void ShowTrackDump(int /*part*/, int /*track*/) {}
    // True when the user confirmed a change to the song's steps.
    virtual bool EditSongStep(int /*song*/, int /*step*/) { return false; }
};

} // namespace tarvix
