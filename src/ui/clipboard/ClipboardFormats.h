#pragma once

#include "model/ClipboardBlock.h"
#include "ui/CommandState.h"
#include "ui/Node.h"

#include <QString>

#include <optional>

namespace tarvix {

// The MIME type a kind's block travels under on this platform.
//
// On Windows, Qt hands a type written application/x-qt-windows-mime;
// value="NAME" to the system clipboard as the registered format NAME, with
// the bytes as they are. So the block sits under exactly "Tarvix_Parts"
// (and so on), and two running copies of the program exchange it as they
// always have. Everywhere else the MIME type is itself the name the system
// clipboard knows, and "application/x-tarvix-parts" (and so on) passes
// between any two copies of the program.
QString ClipboardMimeType(ClipboardKind kind);

// The records a Copy or Paste in this pane reads or writes: in the list the
// list's own kind, in the tree parts for "Parts" and one part, songs for
// "Songs" and one song. None without a node.
std::optional<ClipboardKind> ClipboardKindFor(Pane pane, NodeKind kind);

} // namespace tarvix
