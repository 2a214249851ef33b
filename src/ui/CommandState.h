#pragma once

#include "ui/CommandTable.h"

namespace tarvix {

enum class Pane { None, Tree, List };

// What command enabling depends on, gathered by the frame on each update.
struct UiState {
    Pane activePane = Pane::None;
    NodeKind kind = NodeKind::None;
    bool hasSelection = false; // in the active pane
    bool inputOpen = false;
    bool outputOpen = false;
    bool canPaste = false; // the clipboard holds what Paste would read
    bool canUndo = false;
    bool canRedo = false;
    bool pianoRollTarget = false; // a part to show in a piano roll
    bool songViewTarget = false;  // a song to show as blocks
};

bool IsCommandEnabled(const CommandInfo& command, const UiState& state);

} // namespace tarvix
