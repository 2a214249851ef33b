#include "ui/views/ViewWindows.h"

#include "model/Mmt8Memory.h"
#include "ui/ListPane.h"
#include "ui/MainFrame.h"
#include "ui/TreePane.h"
#include "ui/views/PianoRollWindow.h"
#include "ui/views/SongView.h"
#include "ui/views/SongViewWindow.h"

#include <QAbstractItemModel>
#include <QItemSelectionModel>
#include <QTimer>

namespace tarvix {

namespace {
template <typename Window> Window* Raise(Window* window)
{
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}
} // namespace

CViewWindows::CViewWindows(CMainFrame& frame, const CMmt8Memory& memory)
    : QObject(&frame), m_frame(frame), m_memory(memory)
{
    QAbstractItemModel* list = frame.List().model();
    connect(list, &QAbstractItemModel::dataChanged, this, &CViewWindows::RequestRefresh);
    connect(list, &QAbstractItemModel::modelReset, this, &CViewWindows::RequestRefresh);
    connect(list, &QAbstractItemModel::rowsInserted, this, &CViewWindows::RequestRefresh);
    connect(list, &QAbstractItemModel::rowsRemoved, this, &CViewWindows::RequestRefresh);
    connect(frame.List().selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CViewWindows::ShowListSelection);
}

std::optional<int> CViewWindows::PianoRollTarget() const
{
    const Node node = m_frame.CurrentNode();
    if (node.kind == NodeKind::Part)
        return node.index;
    if (m_frame.ActivePane() != Pane::List)
        return std::nullopt;
    const std::vector<int> rows = m_frame.List().SelectedRows();
    if (rows.empty())
        return std::nullopt;
    if (node.kind == NodeKind::AllParts)
        return rows.front();
    if (node.kind == NodeKind::Song && CMmt8Memory::IsSong(node.index)) {
        const auto& steps = m_memory.Song(node.index).steps;
        if (static_cast<std::size_t>(rows.front()) < steps.size() &&
            CMmt8Memory::IsPart(steps[static_cast<std::size_t>(rows.front())].part))
            return steps[static_cast<std::size_t>(rows.front())].part;
    }
    return std::nullopt;
}

std::optional<int> CViewWindows::SongViewTarget() const
{
    const Node node = m_frame.CurrentNode();
    if (node.kind == NodeKind::Song)
        return node.index;
    if (node.kind == NodeKind::AllSongs && m_frame.ActivePane() == Pane::List) {
        const std::vector<int> rows = m_frame.List().SelectedRows();
        if (!rows.empty())
            return rows.front();
    }
    return std::nullopt;
}

void CViewWindows::Execute(CommandId id)
{
    if (id == kCmdPianoRoll) {
        if (const std::optional<int> part = PianoRollTarget())
            OpenPianoRoll(*part);
    } else if (id == kCmdSongView) {
        if (const std::optional<int> song = SongViewTarget())
            OpenSongView(*song);
    }
}

CPianoRollWindow* CViewWindows::OpenPianoRoll(int part)
{
    if (!CMmt8Memory::IsPart(part))
        return nullptr;
    if (CPianoRollWindow* open = PianoRoll(part))
        return Raise(open);
    auto* window = new CPianoRollWindow(m_memory, part, &m_frame);
    m_pianoRolls[part] = window;
    return Raise(window);
}

CSongViewWindow* CViewWindows::OpenSongView(int song)
{
    if (!CMmt8Memory::IsSong(song))
        return nullptr;
    if (CSongViewWindow* open = SongView(song))
        return Raise(open);
    auto* window = new CSongViewWindow(m_memory, song, &m_frame);
    connect(window, &CSongViewWindow::stepSelected, this, &CViewWindows::SelectStepInList);
    m_songViews[song] = window;
    ShowListSelection();
    return Raise(window);
}

CPianoRollWindow* CViewWindows::PianoRoll(int part) const
{
    const auto found = m_pianoRolls.find(part);
    return found == m_pianoRolls.end() ? nullptr : found->second.data();
}

CSongViewWindow* CViewWindows::SongView(int song) const
{
    const auto found = m_songViews.find(song);
    return found == m_songViews.end() ? nullptr : found->second.data();
}

void CViewWindows::RequestRefresh()
{
    // An edit redraws the list in several steps; the windows redraw once.
    if (m_refreshPosted)
        return;
    m_refreshPosted = true;
    QTimer::singleShot(0, this, &CViewWindows::RefreshAll);
}

void CViewWindows::RefreshAll()
{
    m_refreshPosted = false;
    for (const auto& [part, window] : m_pianoRolls)
        if (window)
            window->Refresh();
    for (const auto& [song, window] : m_songViews)
        if (window)
            window->Refresh();
    ShowListSelection();
}

void CViewWindows::SelectStepInList(int song, int step)
{
    if (m_frame.CurrentNode() != Node{NodeKind::Song, song})
        m_frame.Tree().SelectNode({NodeKind::Song, song});
    m_frame.List().SelectRow(step);
}

void CViewWindows::ShowListSelection()
{
    const Node node = m_frame.CurrentNode();
    if (node.kind != NodeKind::Song)
        return;
    if (CSongViewWindow* window = SongView(node.index)) {
        const std::vector<int> rows = m_frame.List().SelectedRows();
        window->View().SetSelectedStep(rows.empty() ? -1 : rows.front());
    }
}

} // namespace tarvix
