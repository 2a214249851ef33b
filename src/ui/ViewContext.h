#pragma once

#include "ui/Node.h"

namespace tarvix {

class CMmt8Memory;

// What the frame, the panes and the commands share: the document and
// `CurrentNode`, the node selected in the tree, which the tree keeps current.
struct ViewContext {
    CMmt8Memory& memory;
    Node currentNode{};
};

} // namespace tarvix
