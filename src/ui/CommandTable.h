#pragma once

#include "ui/CommandId.h"
#include "ui/Node.h"

#include <vector>

namespace tarvix {

enum class CommandMenu { None, File, Edit, Tools, Help, View };
enum class CommandHandler { Frame, ActivePane, ListPane, TreePane, Nobody };

// When a command is enabled; the kind-bound rules read `rule_kind`.
enum class EnableRule {
    Always,
    InputOpen,     // the MIDI input device is open
    OutputOpen,    // the MIDI output device is open
    PaneSelection, // the active pane has a selection
    Paste,         // the clipboard holds what a paste in the active pane reads
    ListActive,
    ListKindSelection, // list active, CurrentNode of rule_kind, a selection
    ListKind,          // list active, CurrentNode of rule_kind
    TreeRename,        // tree active, one part or one song selected
    CanUndo,           // the history has a step to undo
    CanRedo,           // the history has a step to redo
    PianoRollTarget,   // the panes point at a part
    SongViewTarget,    // the panes point at a song
};

struct CommandInfo {
    CommandId id;
    const char* objectName; // the QAction's, stable for tests and scripts
    CommandMenu menu;
    const char* menuText; // with its accelerator hint after a tab
    const char* keys;     // QKeySequence portable texts, "; " between keys
    bool onToolbar;
    const char* promptTip; // status-bar prompt, then "\n" and the tooltip
    CommandHandler handler;
    EnableRule rule;
    NodeKind ruleKind;
    bool separatorAfter;
};

// Every command in menu order (the View menu stands between Edit and
// Tools); the rows without a menu are keys only.
const std::vector<CommandInfo>& CommandTable();
const CommandInfo* FindCommand(CommandId id);

// The toolbar's buttons in order; kCmdNone is a separator.
const std::vector<CommandId>& ToolbarLayout();

// The File menu's "Recent &Files" submenu and its items' prompt.
inline constexpr const char* kRecentFilesMenuText = "Recent &Files";
inline constexpr const char* kRecentFilesPrompt = "Open this document";

const char* MenuTitle(CommandMenu menu);

// Undo and Redo name the step they would take: "&Undo Rename\tCtrl+Z".
inline constexpr const char* kUndoMenuText = "&Undo\tCtrl+Z";
inline constexpr const char* kRedoMenuText = "&Redo\tCtrl+Y";

} // namespace tarvix
