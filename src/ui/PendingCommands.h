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

// What the frame and the panes hand on once a command has been routed: the
// transfers, Options, the MIDI file dump, import and export, the edit
// commands and dialogs, the clipboard, the track dump view and the step
// properties dialog. The frame decides whether a command is enabled and where
// it goes; the editor behind this interface decides what it does, so the
// window can be tested with a recording stand-in.
class IPendingCommands {
public:
    virtual ~IPendingCommands() = default;

    // Frame commands.
    virtual void Receive() = 0;
    virtual void Send() = 0;
    // page 0 General, 1 MIDI; focusControl 0 or the control to focus.
    virtual void ShowOptions(int page, int focusControl) = 0;
    virtual void MidiFileDump() = 0;

    // Pane commands: Import, Export, Copy, Paste, Delete and the list's
    // edit commands (Insert, Increment, Decrement, Assign, Beats, Channel,
    // Tempo).
    virtual void PaneCommand(CommandId id, const PaneCommandContext& context) = 0;
    // Whether the clipboard holds the records a paste of this kind reads.
    virtual bool ClipboardHasRecords(Pane pane, NodeKind kind) const = 0;

    // Row activation in the list.
    virtual void ShowTrackDump(int part, int track) = 0;
    // True when the user confirmed a change to the song's steps.
    virtual bool EditSongStep(int song, int step) = 0;
};

} // namespace tarvix
