#pragma once

#include "ui/CommandId.h"
#include "ui/PendingCommands.h"

class QLineEdit;

namespace tarvix {

class CMainFrame;
class CMmt8Memory;

// Copy and Paste of parts, tracks, songs and steps through the system
// clipboard, one format per kind of record. Paste replaces slots in place
// from the selection on; a damaged block is refused whole and said so.
// While a tree label is edited both act on the label's text instead.
class CClipboardCommands {
public:
    CClipboardCommands(CMmt8Memory& memory, CMainFrame& frame);

    static bool Handles(CommandId id) { return id == kCmdCopy || id == kCmdPaste; }
    void Execute(CommandId id, const PaneCommandContext& context);
    // Whether the clipboard holds the format a paste in this pane reads.
    static bool HasRecords(Pane pane, NodeKind kind);

private:
    void Copy(const PaneCommandContext& context);
    void Paste(const PaneCommandContext& context);
    // The field of the tree label being edited, or null.
    QLineEdit* LabelEditor() const;

    CMmt8Memory& m_memory;
    CMainFrame& m_frame;
};

} // namespace tarvix
