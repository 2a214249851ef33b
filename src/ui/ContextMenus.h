#pragma once

#include "ui/CommandId.h"
#include "ui/CommandState.h"
#include "ui/Node.h"

#include <vector>

namespace tarvix {

struct ContextMenuItem {
    const char* text;
    CommandId command;
};

struct ContextMenuLayout {
    const char* name; // the menu's objectName
    std::vector<ContextMenuItem> items;
};

// The popup menu of a pane, chosen by CurrentNode's kind rather than by the
// item clicked; null for no node.
const ContextMenuLayout* FindContextMenu(Pane pane, NodeKind kind);

} // namespace tarvix
