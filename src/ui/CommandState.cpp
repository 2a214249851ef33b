#include "ui/CommandState.h"

namespace tarvix {

bool IsCommandEnabled(const CommandInfo& command, const UiState& state)
{
    const bool list = state.activePane == Pane::List;
    const bool tree = state.activePane == Pane::Tree;
    switch (command.rule) {
    case EnableRule::Always: return true;
    case EnableRule::InputOpen: return state.inputOpen;
    case EnableRule::OutputOpen: return state.outputOpen;
    case EnableRule::PaneSelection: return state.activePane != Pane::None && state.hasSelection;
    case EnableRule::Paste: return state.activePane != Pane::None && state.canPaste;
    case EnableRule::ListActive: return list;
    case EnableRule::ListKindSelection:
        return list && state.kind == command.ruleKind && state.hasSelection;
    case EnableRule::ListKind: return list && state.kind == command.ruleKind;
    case EnableRule::CanUndo: return state.canUndo;
    case EnableRule::CanRedo: return state.canRedo;
    case EnableRule::PianoRollTarget: return state.pianoRollTarget;
    case EnableRule::SongViewTarget: return state.songViewTarget;
    case EnableRule::TreeRename:
        return tree && state.hasSelection &&
               (state.kind == NodeKind::Part || state.kind == NodeKind::Song);
    }
    return false;
}

} // namespace tarvix
