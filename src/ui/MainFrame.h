#pragma once

#include "ui/CommandId.h"
#include "ui/CommandState.h"
#include "ui/Node.h"
#include "ui/ViewContext.h"
#include "ui/undo/DocumentHistory.h"

#include <QMainWindow>

#include <functional>
#include <memory>
#include <optional>

class QMenu;
class QSplitter;
class QToolBar;

namespace tarvix {

class CCommandActions;
class CListPane;
class CMmt8Memory;
class IPendingCommands;
class CRecentFileList;
class CSettings;
class CStatusPanes;
class CTreePane;
class CViewWindows;
class IMidiPorts;

// The program's window: menus, toolbar and keys from the command table, the
// tree and list panes in a splitter, the status bar, the current file and
// the recent files. It runs the file-level commands itself and hands every
// other command to the active pane.
class CMainFrame : public QMainWindow {
    Q_OBJECT
public:
    CMainFrame(CMmt8Memory& memory, CSettings& settings, IMidiPorts& ports,
               IPendingCommands& pending, QWidget* parent = nullptr);
    ~CMainFrame() override;

    // After the window is shown: the files of the command line, or else the
    // last file, or else a Receive, as the settings say.
    void ProcessStartup(const QStringList& arguments);

    // Loads a .syx file into the document; reports a failure and then leaves
    // the document, its file and the views as they were.
    bool OpenFile(const QString& path, const QString& title);
    // Opens a .syx file as File > Open does after its question, and puts it
    // at the top of the recent files.
    bool OpenDocumentFile(const QString& path);
    void SetCurrentFile(const QString& path, const QString& title);
    // The tree, then the list, drawn again from the document.
    void RefreshViews();
    // Before the document is replaced or dropped: false when the user
    // cancelled, or chose to save and the save did not happen.
    bool QuerySaveChanges();
    // Command states, title and status bar, now.
    void UpdateUserInterface();
    // The same, once the events already queued are handled.
    void RequestUpdate();

    void ExecuteCommand(CommandId id);
    // Runs a change of the document that no command of the table starts
    // (a dropped MIDI file, the step properties) as one undo step.
    void ChangeDocument(const UndoStepKind& kind, const std::function<void()>& change);
    void PostCommand(CommandId id);
    void SwitchPane(Pane pane);
    // The popup menu of a pane for CurrentNode's kind, its items enabled
    // as the commands are; null when no node is selected.
    std::unique_ptr<QMenu> BuildContextMenu(Pane pane);

    // Stores what the window keeps between runs and closes the ports; runs
    // once, at the latest when the window is destroyed.
    void ShutDown();

    QAction* Action(CommandId id) const;
    Pane ActivePane() const { return m_activePane; }
    const QString& CurrentPath() const { return m_currentPath; }
    const QString& CurrentTitle() const { return m_currentTitle; }
    Node CurrentNode() const { return m_context.currentNode; }
    CTreePane& Tree() { return *m_tree; }
    CListPane& List() { return *m_list; }
    CStatusPanes& StatusPanes() { return *m_status; }
    CRecentFileList& RecentFiles() { return *m_recentFiles; }
    QSplitter& Splitter() { return *m_splitter; }
    QToolBar& ToolBar() { return *m_toolBar; }
    // The piano roll and song windows.
    CViewWindows& Views() { return *m_views; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void CreateLayout();
    void ConnectPanes();
    void RestoreState();
    void OnNodeChanged();
    void OnFocusChanged(QWidget* now);
    void RunCommand(CommandId id, const CommandInfo& info);
    void RouteToPane(CommandId id, CommandHandler handler);
    void OnUndo(bool redo);
    void ShowContextMenu(Pane pane, QPoint globalPos);
    void OpenOptionsAtPort(int focusControl);

    // File commands.
    void OnInit();
    void OnOpen();
    bool Save();
    bool SaveAs();
    bool SaveTo(const QString& path);
    void OnRecentFile(CommandId id);
    void RememberFile(const QString& path);
    void OnAbout();

    UiState GatherState() const;
    void UpdateTitle();
    void UpdateStatusBar();
    void ApplyToolBarText();
    void ApplyUndoTexts();

    CDocumentHistory m_history;
    ViewContext m_context;
    CSettings& m_settings;
    IMidiPorts& m_ports;
    IPendingCommands& m_pending;

    CCommandActions* m_actions = nullptr;
    QToolBar* m_toolBar = nullptr;
    CStatusPanes* m_status = nullptr;
    QSplitter* m_splitter = nullptr;
    CTreePane* m_tree = nullptr;
    CListPane* m_list = nullptr;
    CRecentFileList* m_recentFiles = nullptr;
    CViewWindows* m_views = nullptr;

    QString m_currentPath;
    QString m_currentTitle;
    Pane m_activePane = Pane::Tree;
    std::optional<bool> m_shownModified;
    std::optional<bool> m_shownToolBarText;
    bool m_updatePosted = false;
    bool m_shutDown = false;
};

} // namespace tarvix
