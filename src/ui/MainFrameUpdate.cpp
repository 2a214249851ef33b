// Keeping the window in step with the document: command states, the title
// and the status bar.
#include "ui/MainFrame.h"

#include "model/Mmt8Memory.h"
#include "settings/Settings.h"
#include "ui/CommandActions.h"
#include "ui/ListPane.h"
#include "ui/MidiPorts.h"
#include "ui/PendingCommands.h"
#include "ui/ProgramInfo.h"
#include "ui/StatusPanes.h"
#include "ui/TreePane.h"
#include "ui/views/ViewWindows.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QTimer>
#include <QToolBar>

namespace tarvix {

void CMainFrame::RequestUpdate()
{
    if (m_updatePosted)
        return;
    m_updatePosted = true;
    QTimer::singleShot(0, this, [this] { UpdateUserInterface(); });
}

UiState CMainFrame::GatherState() const
{
    UiState state;
    state.activePane = m_activePane;
    state.kind = m_context.currentNode.kind;
    state.hasSelection = m_activePane == Pane::List   ? m_list->HasSelection()
                         : m_activePane == Pane::Tree ? m_tree->HasSelection()
                                                      : false;
    state.pianoRollTarget = m_views->PianoRollTarget().has_value();
    state.songViewTarget = m_views->SongViewTarget().has_value();
    state.inputOpen = m_ports.IsInputOpen();
    state.outputOpen = m_ports.IsOutputOpen();
    if (m_activePane == Pane::Tree && m_tree->IsEditingLabel()) {
        const QMimeData* clipboard = QGuiApplication::clipboard()->mimeData();
        state.canPaste = clipboard && clipboard->hasText();
    } else {
        state.canPaste = m_pending.ClipboardHasRecords(m_activePane, state.kind);
    }
    return state;
}

void CMainFrame::UpdateUserInterface()
{
    m_updatePosted = false;
    const UiState state = GatherState();
    for (const auto& [id, action] : m_actions->Actions())
        if (const CommandInfo* info = FindCommand(id))
            action->setEnabled(IsCommandEnabled(*info, state));
    if (m_shownModified != (m_context.memory.modified != 0))
        UpdateTitle();
    ApplyToolBarText();
    UpdateStatusBar();
}

void CMainFrame::UpdateTitle()
{
    const bool modified = m_context.memory.modified != 0;
    QString title = QString::fromLatin1(kApplicationName);
    if (!m_currentPath.isEmpty())
        title += QStringLiteral(" - ") + m_currentPath;
    if (modified)
        title += QStringLiteral(" *");
    setWindowTitle(title);
    m_shownModified = modified;
}

void CMainFrame::UpdateStatusBar()
{
    m_status->ShowMemory(m_context.memory.GetMemorySize());
    m_status->ShowPorts(m_ports.IsInputOpen() ? m_ports.InputName() : QString(),
                        m_ports.IsOutputOpen() ? m_ports.OutputName() : QString());
}

void CMainFrame::ApplyToolBarText()
{
    const bool shown = m_settings.Values().showToolBarButtonText == 1;
    if (m_shownToolBarText == shown)
        return;
    m_shownToolBarText = shown;
    m_toolBar->setToolButtonStyle(shown ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonIconOnly);
}

} // namespace tarvix
