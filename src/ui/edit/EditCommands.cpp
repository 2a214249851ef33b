#include "ui/edit/EditCommands.h"

#include "framework/DialogRunner.h"
#include "framework/MessageBox.h"
#include "model/Mmt8Memory.h"
#include "ui/ListPane.h"
#include "ui/MainFrame.h"
#include "ui/edit/AssignPartsDialog.h"
#include "ui/edit/PartLengthDialog.h"
#include "ui/edit/SongTempoDialog.h"
#include "ui/edit/StepPropertiesDialog.h"
#include "ui/edit/TrackChannelDialog.h"

#include <QItemSelectionModel>

#include <algorithm>

namespace tarvix {

namespace {
constexpr const char* kDeleteAllParts = "Do you really want to delete all parts?";
constexpr const char* kDeleteAllSongs = "Do you really want to delete all songs?";
constexpr const char* kTooManySteps = "This would exceed max number of steps (%d).\n";

bool InList(const PaneCommandContext& context, NodeKind kind)
{
    return context.pane == Pane::List && context.node.kind == kind;
}

bool InListWithSelection(const PaneCommandContext& context, NodeKind kind)
{
    return InList(context, kind) && !context.selectedRows.empty();
}
} // namespace

CEditCommands::CEditCommands(CMmt8Memory& memory, CMainFrame& frame)
    : m_memory(memory), m_frame(frame)
{
}

bool CEditCommands::Handles(CommandId id)
{
    switch (id) {
    case kCmdDelete:
    case kCmdInsertStep:
    case kCmdIncrement:
    case kCmdDecrement:
    case kCmdAssign:
    case kCmdPartBeats:
    case kCmdTrackChannel:
    case kCmdSongTempo: return true;
    default: return false;
    }
}

void CEditCommands::Execute(CommandId id, const PaneCommandContext& context)
{
    switch (id) {
    case kCmdDelete:
        if (context.pane == Pane::Tree)
            DeleteInTree(context.node);
        else if (context.pane == Pane::List)
            DeleteInList(context);
        break;
    case kCmdInsertStep: InsertStep(context); break;
    case kCmdIncrement: ChangeStepPart(context, +1); break;
    case kCmdDecrement: ChangeStepPart(context, -1); break;
    case kCmdAssign: AssignPartsToSong(context); break;
    case kCmdPartBeats: SetPartBeats(context); break;
    case kCmdTrackChannel: SetTrackChannel(context); break;
    case kCmdSongTempo: SetSongTempo(context); break;
    default: break;
    }
}

void CEditCommands::DeleteInTree(Node node)
{
    switch (node.kind) {
    case NodeKind::AllParts:
        if (!AskToDeleteAll(kDeleteAllParts))
            return;
        m_memory.ClearPart(-1);
        break;
    case NodeKind::Part: m_memory.ClearPart(node.index); break;
    case NodeKind::AllSongs:
        if (!AskToDeleteAll(kDeleteAllSongs))
            return;
        m_memory.ClearSong(-1);
        break;
    case NodeKind::Song: m_memory.ClearSong(node.index); break;
    case NodeKind::None: return;
    }
    DocumentChanged();
}

void CEditCommands::DeleteInList(const PaneCommandContext& context)
{
    if (context.selectedRows.empty())
        return;
    const Node node = context.node;
    switch (node.kind) {
    case NodeKind::AllParts:
        for (int row : context.selectedRows)
            m_memory.ClearPart(row);
        break;
    case NodeKind::Part:
        for (int row : context.selectedRows)
            m_memory.ClearTrack(node.index, row);
        break;
    case NodeKind::AllSongs:
        for (int row : context.selectedRows)
            m_memory.ClearSong(row);
        break;
    case NodeKind::Song:
        // One Delete removes one step, however many are selected.
        DeleteStep(node.index, context.selectedRows.front());
        return;
    case NodeKind::None: return;
    }
    DocumentChanged();
}

void CEditCommands::DeleteStep(int song, int row)
{
    if (!m_memory.DeleteStep(song, row))
        return;
    DocumentChanged();
    // The same position again, or the new last step when the last went.
    const int count = static_cast<int>(m_memory.Song(song).steps.size());
    if (count == 0)
        return;
    CListPane& list = m_frame.List();
    const QModelIndex index = list.model()->index(std::min(row, count - 1), 0);
    list.selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                      QItemSelectionModel::Rows);
}

void CEditCommands::InsertStep(const PaneCommandContext& context)
{
    if (!InList(context, NodeKind::Song) || !CMmt8Memory::IsSong(context.node.index))
        return;
    const int song = context.node.index;
    if (m_memory.Song(song).steps.size() >= static_cast<std::size_t>(kMaxSteps)) {
        CMessageBox::Report(&m_frame, QString::asprintf(kTooManySteps, kMaxSteps));
        return;
    }
    const int position = context.selectedRows.empty() ? 0 : context.selectedRows.front();
    if (m_memory.InsertStep(song, position))
        DocumentChanged();
}

void CEditCommands::ChangeStepPart(const PaneCommandContext& context, int delta)
{
    if (!InListWithSelection(context, NodeKind::Song))
        return;
    const int row = context.selectedRows.front();
    if (!m_memory.ChangeStepPart(context.node.index, row, delta))
        return;
    // Only the row changed: nothing else is redrawn.
    m_memory.modified = 1;
    m_frame.List().RefreshListItem(row);
}

void CEditCommands::AssignPartsToSong(const PaneCommandContext& context)
{
    if (!InListWithSelection(context, NodeKind::AllParts))
        return;
    CAssignPartsDialog dialog(m_memory, &m_frame);
    if (CDialogRunner::Exec(dialog) != QDialog::Accepted)
        return;
    const int song = dialog.Song();
    const QString name = dialog.NewName();
    if (!name.isEmpty()) {
        const QByteArray bytes = name.toLatin1();
        m_memory.SetSongName(song, {bytes.constData(), static_cast<std::size_t>(bytes.size())});
    }
    m_memory.DeleteStep(song, -1);
    for (int part : context.selectedRows)
        m_memory.AppendStep(song, static_cast<std::uint8_t>(part), kAllTracksMask);
    if (m_memory.Song(song).tempo == 0)
        m_memory.SetSongTempo(song, kDefaultTempo);
    // Deliberately neither marked modified nor redrawn: the song shows its
    // new steps at the next refresh.
}

void CEditCommands::SetPartBeats(const PaneCommandContext& context)
{
    if (!InListWithSelection(context, NodeKind::AllParts) ||
        !CMmt8Memory::IsPart(context.selectedRows.front()))
        return;
    CPartLengthDialog dialog(m_memory.Part(context.selectedRows.front()).beats, &m_frame);
    if (CDialogRunner::Exec(dialog) != QDialog::Accepted)
        return;
    for (int part : context.selectedRows)
        m_memory.SetPartBeats(part, dialog.Beats());
    DocumentChanged();
}

void CEditCommands::SetTrackChannel(const PaneCommandContext& context)
{
    const int part = context.node.index;
    if (!InListWithSelection(context, NodeKind::Part) || !CMmt8Memory::IsPart(part) ||
        !CMmt8Memory::IsTrack(context.selectedRows.front()))
        return;
    const auto first = static_cast<std::size_t>(context.selectedRows.front());
    CTrackChannelDialog dialog(m_memory.Part(part).tracks[first].channel, &m_frame);
    if (CDialogRunner::Exec(dialog) != QDialog::Accepted)
        return;
    for (int track : context.selectedRows)
        m_memory.SetTrackChannel(part, track, dialog.Channel());
    DocumentChanged();
}

void CEditCommands::SetSongTempo(const PaneCommandContext& context)
{
    if (!InListWithSelection(context, NodeKind::AllSongs) ||
        !CMmt8Memory::IsSong(context.selectedRows.front()))
        return;
    CSongTempoDialog dialog(m_memory.Song(context.selectedRows.front()).tempo, &m_frame);
    if (CDialogRunner::Exec(dialog) != QDialog::Accepted)
        return;
    for (int song : context.selectedRows)
        m_memory.SetSongTempo(song, dialog.Tempo());
    DocumentChanged();
}

bool CEditCommands::EditSongStep(int song, int step)
{
    // A song without steps has nothing to show: as if cancelled.
    if (!CMmt8Memory::IsSong(song) || m_memory.Song(song).steps.empty())
        return false;
    CStepPropertiesDialog dialog(m_memory, m_memory.Song(song).steps, step, &m_frame);
    if (CDialogRunner::Exec(dialog) != QDialog::Accepted)
        return false;
    m_memory.Song(song).steps = dialog.Steps();
    return true;
}

bool CEditCommands::AskToDeleteAll(const char* question)
{
    return CMessageBox::Report(&m_frame, QString::fromLatin1(question), QStringLiteral("Warning"),
                               QMessageBox::NoIcon, QMessageBox::Yes | QMessageBox::No,
                               QMessageBox::No) == QMessageBox::Yes;
}

void CEditCommands::DocumentChanged()
{
    m_memory.modified = 1;
    m_frame.RefreshViews();
}

} // namespace tarvix
