#pragma once

#include <string>
#include <vector>

namespace tarvix {

class CMmt8Memory;

// What the list pane shows for each kind of tree node. The editor's list
// views and tarvix-cli both take their texts from here, so they cannot
// disagree.
enum class ListKind { Parts = 1, Tracks = 2, Songs = 3, Steps = 4 };

struct ListColumn {
    const char* title;
    // Width in multiples of the width of "XXXXX"; 0 fills the rest.
    int widthUnits;
};

const std::vector<ListColumn>& GetListColumns(ListKind kind);
// Rows of the list; index is the part (Tracks) or song (Steps) shown.
int GetListRowCount(const CMmt8Memory& memory, ListKind kind, int index);
// The text of one cell, computed when asked; empty outside the list.
std::string GetListCellText(const CMmt8Memory& memory, ListKind kind, int index, int row,
                            int column);

} // namespace tarvix
