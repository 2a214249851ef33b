#include "ui/MainFrame.h"

#include "framework/RecentFileList.h"
#include "framework/WindowPlacement.h"
#include "model/Mmt8Memory.h"
#include "settings/Settings.h"
#include "ui/CommandActions.h"
#include "ui/CommandLine.h"
#include "ui/ContextMenus.h"
#include "ui/FrameKeys.h"
#include "ui/ListPane.h"
#include "ui/MidiPorts.h"
#include "ui/NavigationModel.h"
#include "ui/PendingCommands.h"
#include "ui/SettingsKeyStore.h"
#include "ui/StatusPanes.h"
#include "ui/TreePane.h"
#include "ui/undo/UndoSteps.h"
#include "ui/views/ViewWindows.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

#include <algorithm>
#include <array>

namespace tarvix {

CMainFrame::CMainFrame(CMmt8Memory& memory, CSettings& settings, IMidiPorts& ports,
                       IPendingCommands& pending, QWidget* parent)
    : QMainWindow(parent), m_history(memory), m_context{memory, m_history}, m_settings(settings),
      m_ports(ports), m_pending(pending)
{
    setObjectName(QStringLiteral("Tarvix_MainFrame"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/tarvix.svg")));
    CreateLayout();
    ConnectPanes();
    RestoreState();
    m_ports.SetStatusBar(statusBar());
    m_ports.OpenDevices();

    // At creation the part list shows first, with the tree focused.
    m_tree->SelectNode({NodeKind::AllParts, 0});
    m_tree->setFocus();
    SwitchPane(Pane::Tree);
    UpdateTitle();
    UpdateUserInterface();
}

CMainFrame::~CMainFrame()
{
    ShutDown();
    // The children and the application outlive this part of the window;
    // nothing they say while it is torn down may reach it.
    for (QObject* sender :
         std::initializer_list<QObject*>{qApp, QGuiApplication::clipboard(), m_tree, m_list,
                                         &m_tree->Model(), m_status, m_recentFiles, m_actions})
        disconnect(sender, nullptr, this, nullptr);
    // The panes go while the history they record changes in is still here:
    // a label edit open at the end is committed as they are torn down.
    delete m_splitter;
    m_splitter = nullptr;
    m_tree = nullptr;
    m_list = nullptr;
}

void CMainFrame::CreateLayout()
{
    m_actions = new CCommandActions(*this);
    connect(m_actions, &CCommandActions::commandTriggered, this, &CMainFrame::ExecuteCommand);

    QMenu* recentMenu = m_actions->BuildMenus(*menuBar());
    for (QMenu* menu : menuBar()->findChildren<QMenu*>())
        connect(menu, &QMenu::aboutToShow, this, &CMainFrame::UpdateUserInterface);

    m_toolBar = addToolBar(tr("Toolbar"));
    m_toolBar->setObjectName(QStringLiteral("toolBar"));
    m_toolBar->setIconSize(QSize(16, 16));
    m_actions->BuildToolbar(*m_toolBar);

    m_status = new CStatusPanes(*statusBar());
    connect(m_status, &CStatusPanes::inputPaneDoubleClicked, this,
            [this] { OpenOptionsAtPort(kMidiInPortControl); });
    connect(m_status, &CStatusPanes::outputPaneDoubleClicked, this,
            [this] { OpenOptionsAtPort(kMidiOutPortControl); });

    m_splitter = new QSplitter(Qt::Horizontal, this);
    m_splitter->setObjectName(QStringLiteral("splitter"));
    m_splitter->setChildrenCollapsible(false);
    m_tree = new CTreePane(m_context, m_pending, m_splitter);
    m_list = new CListPane(m_context, m_pending, m_splitter);
    m_splitter->setStretchFactor(1, 1);
    setCentralWidget(m_splitter);
    m_views = new CViewWindows(*this, m_context.memory);

    m_recentFiles = new CRecentFileList(kCmdRecentFirst, this);
    m_recentFiles->AttachMenu(recentMenu, QString::fromLatin1(kRecentFilesPrompt));
    connect(m_recentFiles, &CRecentFileList::entryChosen, this,
            [this](int id) { ExecuteCommand(static_cast<CommandId>(id)); });
}

void CMainFrame::ConnectPanes()
{
    connect(m_tree, &CTreePane::nodeChanged, this, &CMainFrame::OnNodeChanged);
    connect(m_tree, &CTreePane::switchPaneRequested, this, &CMainFrame::SwitchPane);
    connect(m_tree, &CTreePane::updateRequested, this, &CMainFrame::RequestUpdate);
    connect(m_tree, &CTreePane::contextMenuRequested, this, &CMainFrame::ShowContextMenu);
    connect(&m_tree->Model(), &CNavigationModel::renamed, this, &CMainFrame::RefreshViews);
    connect(m_list, &CListPane::switchPaneRequested, this, &CMainFrame::SwitchPane);
    connect(m_list, &CListPane::selectNodeRequested, m_tree, &CTreePane::SelectNode);
    connect(m_list, &CListPane::commandRequested, this, &CMainFrame::ExecuteCommand);
    connect(m_list, &CListPane::documentChanged, this, &CMainFrame::RequestUpdate);
    connect(m_list, &CListPane::updateRequested, this, &CMainFrame::RequestUpdate);
    connect(m_list, &CListPane::contextMenuRequested, this, &CMainFrame::ShowContextMenu);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* now) { OnFocusChanged(now); });
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &CMainFrame::RequestUpdate);
}

void CMainFrame::RestoreState()
{
    resize(800, 600);
    const CSettingsKey& key = m_settings.GetKey();
    std::array<std::uint8_t, 4> position{};
    int splitter = kDefaultSplitterPosition;
    if (key.ReadBinaryValue(kSplitterValue, position) == kSettingsSuccess)
        splitter = static_cast<int>(static_cast<std::uint32_t>(position[0]) |
                                    static_cast<std::uint32_t>(position[1]) << 8 |
                                    static_cast<std::uint32_t>(position[2]) << 16 |
                                    static_cast<std::uint32_t>(position[3]) << 24);
    m_splitter->setSizes({splitter, std::max(1, width() - splitter)});

    WindowPlacement placement{};
    if (key.ReadBinaryValue(kPlacementValue, placement) == kSettingsSuccess)
        RestoreWindowPlacement(*this, placement);

    CSettingsKeyStore store(key);
    m_recentFiles->Read(store, QString::fromLatin1(kRecentFilesKey));
}

void CMainFrame::ShutDown()
{
    if (m_shutDown)
        return;
    m_shutDown = true;
    m_ports.CloseDevices();
    const CSettingsKey& key = m_settings.GetKey();
    CSettingsKeyStore store(key);
    m_recentFiles->Write(store, QString::fromLatin1(kRecentFilesKey));
    const WindowPlacement placement = SaveWindowPlacement(*this);
    key.WriteBinaryValue(kPlacementValue, placement);
    const auto position = static_cast<std::uint32_t>(m_splitter->sizes().value(0));
    const std::array<std::uint8_t, 4> bytes{
        static_cast<std::uint8_t>(position), static_cast<std::uint8_t>(position >> 8),
        static_cast<std::uint8_t>(position >> 16), static_cast<std::uint8_t>(position >> 24)};
    key.WriteBinaryValue(kSplitterValue, bytes);
}

void CMainFrame::ProcessStartup(const QStringList& arguments)
{
    const QStringList files = FileNamesFromArguments(arguments);
    for (const QString& file : files)
        OpenFile(file, QFileInfo(file).fileName());
    if (!files.isEmpty())
        return;
    if (m_settings.Values().loadLastFileOnStart == 1)
        PostCommand(kCmdRecentFirst);
    else if (m_settings.Values().loadDeviceOnStart == 1 && m_ports.IsInputOpen())
        PostCommand(kCmdReceive);
}

QAction* CMainFrame::Action(CommandId id) const
{
    return m_actions->Action(id);
}

void CMainFrame::PostCommand(CommandId id)
{
    QTimer::singleShot(0, this, [this, id] { ExecuteCommand(id); });
}

void CMainFrame::ExecuteCommand(CommandId id)
{
    if (id >= kCmdRecentFirst && id <= kCmdRecentLast) {
        OnRecentFile(id);
        RequestUpdate();
        return;
    }
    const CommandInfo* info = FindCommand(id);
    if (!info)
        return;
    // The one door of every command that changes the document.
    if (const UndoStepKind* step = UndoStepFor(id))
        m_history.Record(*step, [this, id, info] { RunCommand(id, *info); });
    else
        RunCommand(id, *info);
    RequestUpdate();
}

void CMainFrame::ChangeDocument(const UndoStepKind& kind, const std::function<void()>& change)
{
    m_history.Record(kind, change);
    RequestUpdate();
}

void CMainFrame::RunCommand(CommandId id, const CommandInfo& info)
{
    switch (id) {
    case kCmdInit: OnInit(); break;
    case kCmdOpen: OnOpen(); break;
    case kCmdSave: Save(); break;
    case kCmdSaveAs: SaveAs(); break;
    case kCmdExit: close(); break;
    case kCmdReceive:
        if (QuerySaveChanges())
            m_pending.Receive();
        break;
    case kCmdSend: m_pending.Send(); break;
    case kCmdOptions:
        m_pending.ShowOptions(kOptionsGeneralPage, 0);
        RefreshViews();
        break;
    case kCmdMidiFileDump: m_pending.MidiFileDump(); break;
    case kCmdAbout: OnAbout(); break;
    case kCmdUndo: OnUndo(false); break;
    case kCmdRedo: OnUndo(true); break;
    case kCmdPianoRoll:
    case kCmdSongView: m_views->Execute(id); break;
    case kCmdNextPane:
    case kCmdPrevPane:
        // With two panes the next and the previous one are the same.
        SwitchPane(m_activePane == Pane::Tree ? Pane::List : Pane::Tree);
        break;
    default: RouteToPane(id, info.handler); break;
    }
}

void CMainFrame::OnUndo(bool redo)
{
    if (redo ? m_history.Redo() : m_history.Undo())
        RefreshViews();
}

void CMainFrame::RouteToPane(CommandId id, CommandHandler handler)
{
    const bool toTree = m_activePane == Pane::Tree && (handler == CommandHandler::ActivePane ||
                                                       handler == CommandHandler::TreePane);
    const bool toList = m_activePane == Pane::List && (handler == CommandHandler::ActivePane ||
                                                       handler == CommandHandler::ListPane);
    if (toTree)
        m_tree->HandleCommand(id);
    else if (toList)
        m_list->HandleCommand(id);
}

void CMainFrame::SwitchPane(Pane pane)
{
    if (pane == Pane::List) {
        m_activePane = Pane::List;
        m_list->TakeFocusFromTree();
    } else if (pane == Pane::Tree) {
        m_activePane = Pane::Tree;
        m_tree->setFocus(Qt::TabFocusReason);
    }
    RequestUpdate();
}

void CMainFrame::OnFocusChanged(QWidget* now)
{
    if (!now)
        return;
    if (now == m_tree || m_tree->isAncestorOf(now))
        m_activePane = Pane::Tree;
    else if (now == m_list || m_list->isAncestorOf(now))
        m_activePane = Pane::List;
    else
        return;
    RequestUpdate();
}

void CMainFrame::OnNodeChanged()
{
    m_tree->RefreshTree();
    m_list->RefreshList();
    RequestUpdate();
}

void CMainFrame::RefreshViews()
{
    m_tree->RefreshTree();
    m_list->RefreshList();
    RequestUpdate();
}

std::unique_ptr<QMenu> CMainFrame::BuildContextMenu(Pane pane)
{
    const ContextMenuLayout* layout = FindContextMenu(pane, m_context.currentNode.kind);
    if (!layout)
        return nullptr;
    UpdateUserInterface();
    auto menu = std::make_unique<QMenu>(this);
    menu->setObjectName(QString::fromLatin1(layout->name));
    for (const ContextMenuItem& item : layout->items) {
        QAction* action = menu->addAction(QString::fromLatin1(item.text));
        const CommandId id = item.command;
        action->setData(static_cast<int>(id));
        action->setEnabled(Action(id)->isEnabled());
        connect(action, &QAction::triggered, this, [this, id] { ExecuteCommand(id); });
    }
    return menu;
}

void CMainFrame::ShowContextMenu(Pane pane, QPoint globalPos)
{
    // The menu acts on the pane it was opened in.
    m_activePane = pane;
    if (std::unique_ptr<QMenu> menu = BuildContextMenu(pane))
        menu->exec(globalPos);
}

void CMainFrame::OpenOptionsAtPort(int focusControl)
{
    m_pending.ShowOptions(kOptionsMidiPage, focusControl);
    UpdateStatusBar();
}

void CMainFrame::closeEvent(QCloseEvent* event)
{
    if (!QuerySaveChanges()) {
        event->ignore();
        return;
    }
    event->accept();
}

void CMainFrame::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    m_status->UpdateWidths();
}

} // namespace tarvix
