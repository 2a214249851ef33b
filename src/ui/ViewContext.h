#pragma once

#include "ui/Node.h"

namespace tarvix {

class CDocumentHistory;
class CMmt8Memory;

// What the frame, the panes and the commands share: the document, its undo
// history, through which every change of the document goes, and
// `CurrentNode`, the node selected in the tree, which the tree keeps current.
struct ViewContext {
    CMmt8Memory& memory;
    CDocumentHistory& history;
    Node currentNode{};
};

} // namespace tarvix
