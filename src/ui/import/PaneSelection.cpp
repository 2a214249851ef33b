#include "ui/import/PaneSelection.h"

namespace tarvix {

std::optional<MidiSelection> MidiSelectionFor(const PaneCommandContext& context)
{
    const Node node = context.node;
    const bool tree = context.pane == Pane::Tree;
    MidiSelection selection;
    selection.index = node.index;
    switch (node.kind) {
    case NodeKind::AllParts:
        selection.kind = tree ? MidiSelectionKind::AllParts : MidiSelectionKind::Parts;
        break;
    case NodeKind::Part:
        selection.kind = tree ? MidiSelectionKind::Part : MidiSelectionKind::PartTracks;
        break;
    case NodeKind::AllSongs:
        selection.kind = tree ? MidiSelectionKind::AllSongs : MidiSelectionKind::Songs;
        break;
    case NodeKind::Song:
        selection.kind = tree ? MidiSelectionKind::Song : MidiSelectionKind::Steps;
        break;
    case NodeKind::None: return std::nullopt;
    }
    if (!tree)
        selection.items = context.selectedRows;
    return selection;
}

} // namespace tarvix
