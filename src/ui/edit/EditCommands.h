#pragma once

#include "ui/CommandId.h"
#include "ui/PendingCommands.h"

namespace tarvix {

class CMainFrame;
class CMmt8Memory;

// The commands that change the document from the two panes: delete,
// insert step, increment and decrement a step's part, assign parts to a
// song, beat count, track channel, song tempo and the song step properties.
// Each acts on the node and the selection it is handed; with the wrong node
// kind or nothing selected it does nothing.
class CEditCommands {
public:
    CEditCommands(CMmt8Memory& memory, CMainFrame& frame);

    static bool Handles(CommandId id);
    void Execute(CommandId id, const PaneCommandContext& context);
    // True when the user confirmed the dialog and the song took its steps.
    bool EditSongStep(int song, int step);

private:
    void DeleteInTree(Node node);
    void DeleteInList(const PaneCommandContext& context);
    void DeleteStep(int song, int row);
    void InsertStep(const PaneCommandContext& context);
    void ChangeStepPart(const PaneCommandContext& context, int delta);
    void AssignPartsToSong(const PaneCommandContext& context);
    void SetPartBeats(const PaneCommandContext& context);
    void SetTrackChannel(const PaneCommandContext& context);
    void SetSongTempo(const PaneCommandContext& context);
    bool AskToDeleteAll(const char* question);
    // Marks the document modified and has the tree and the list redrawn.
    void DocumentChanged();

    CMmt8Memory& m_memory;
    CMainFrame& m_frame;
};

} // namespace tarvix
