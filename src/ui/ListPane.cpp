#include "ui/ListPane.h"

#include "model/Mmt8Memory.h"
#include "ui/ListModel.h"
#include "ui/PendingCommands.h"
#include "ui/ViewContext.h"
#include "ui/undo/UndoSteps.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QStyledItemDelegate>

#include <algorithm>

namespace tarvix {

namespace {
// The columns a double-click turns into a command instead of opening the row.
constexpr int kPartBeatsColumn = 2;
constexpr int kTrackChannelColumn = 1;
constexpr int kSongTempoColumn = 2;

// Rows are what the list selects, so no cell is framed as the focused one.
class CRowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->state &= ~QStyle::State_HasFocus;
    }
};

bool IsMovingKey(int key)
{
    switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown: return true;
    default: return false;
    }
}
} // namespace

CListPane::CListPane(ViewContext& context, IPendingCommands& pending, QWidget* parent)
    : QTableView(parent), m_context(context), m_pending(pending),
      m_model(new CListModel(context.memory, this))
{
    setObjectName(QStringLiteral("listPane"));
    setModel(m_model);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setItemDelegate(new CRowDelegate(this));
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    connect(this, &QAbstractItemView::doubleClicked, this,
            [this](const QModelIndex& index) { ActivateRow(index.row(), index.column()); });
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CListPane::updateRequested);
}

void CListPane::RefreshList()
{
    const int remembered = FirstSelectedRow();
    if (!m_model->ShowNode(m_context.currentNode))
        return;
    BuildColumns();
    if (remembered >= 0 && remembered < m_model->rowCount())
        SelectRow(remembered);
}

void CListPane::RefreshListItem(int row)
{
    m_model->RedrawRow(row);
}

bool CListPane::HasSelection() const
{
    return selectionModel()->hasSelection();
}

std::vector<int> CListPane::SelectedRows() const
{
    std::vector<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void CListPane::TakeFocusFromTree()
{
    setFocus(Qt::TabFocusReason);
    if (!HasSelection() && m_model->rowCount() > 0)
        SelectRow(0);
}

void CListPane::ActivateRow(int row, int column)
{
    if (row < 0 || row >= m_model->rowCount())
        return;
    const Node node = m_context.currentNode;
    switch (node.kind) {
    case NodeKind::AllParts:
        if (column == kPartBeatsColumn)
            emit commandRequested(kCmdPartBeats);
        else
            emit selectNodeRequested({NodeKind::Part, row});
        break;
    case NodeKind::Part:
        if (column == kTrackChannelColumn)
            emit commandRequested(kCmdTrackChannel);
        else
            m_pending.ShowTrackDump(node.index, row);
        break;
    case NodeKind::AllSongs:
        if (column == kSongTempoColumn)
            emit commandRequested(kCmdSongTempo);
        else
            emit selectNodeRequested({NodeKind::Song, row});
        break;
    case NodeKind::Song: {
        bool confirmed = false;
        m_context.history.Record(kStepPropertiesStep, [&] {
            confirmed = m_pending.EditSongStep(node.index, row);
            if (confirmed)
                m_context.memory.modified = 1;
        });
        if (confirmed)
            emit documentChanged();
        break;
    }
    case NodeKind::None: return;
    }
    RefreshListItem(row);
    setFocus(Qt::OtherFocusReason);
}

void CListPane::HandleCommand(CommandId id)
{
    if (id == kCmdSelectAll) {
        selectAll();
        return;
    }
    m_pending.PaneCommand(id, {Pane::List, m_context.currentNode, SelectedRows()});
}

QPoint CListPane::KeyboardMenuPosition() const
{
    const int row = FirstSelectedRow();
    if (row >= 0)
        return viewport()->mapToGlobal(visualRect(m_model->index(row, 0)).bottomLeft());
    return mapToGlobal(rect().center() - QPoint(80, 80));
}

QModelIndex CListPane::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const int rows = m_model->rowCount();
    if (rows == 0)
        return {};
    const int current = currentIndex().isValid() ? currentIndex().row() : -1;
    int row = current;
    switch (action) {
    case MoveHome: row = 0; break;
    case MoveEnd: row = rows - 1; break;
    case MoveLeft:
    case MoveRight:
    case MoveNext:
    case MovePrevious: row = std::max(current, 0); break;
    default: row = QTableView::moveCursor(action, modifiers & ~Qt::ControlModifier).row(); break;
    }
    return m_model->index(std::clamp(row, 0, rows - 1), 0);
}

QItemSelectionModel::SelectionFlags CListPane::selectionCommand(const QModelIndex& index,
                                                                const QEvent* event) const
{
    if (event != nullptr && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<const QKeyEvent*>(event);
        if (IsMovingKey(key->key()) && (key->modifiers() & Qt::ControlModifier)) {
            const QKeyEvent plain(QEvent::KeyPress, key->key(),
                                  key->modifiers() & ~Qt::ControlModifier);
            return QTableView::selectionCommand(index, &plain);
        }
    }
    return QTableView::selectionCommand(index, event);
}

bool CListPane::focusNextPrevChild(bool)
{
    emit switchPaneRequested(Pane::Tree);
    return true;
}

void CListPane::keyPressEvent(QKeyEvent* event)
{
    const int key = event->key();
    if ((key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_F2) &&
        event->modifiers() == Qt::NoModifier) {
        ActivateRow(FirstSelectedRow(), -1);
        return;
    }
    // The keyboard's other way to the context menu (the Menu key arrives as
    // a context menu event of its own).
    if (key == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        emit contextMenuRequested(Pane::List, KeyboardMenuPosition());
        return;
    }
    QTableView::keyPressEvent(event);
}

void CListPane::contextMenuEvent(QContextMenuEvent* event)
{
    if (event->reason() != QContextMenuEvent::Mouse) {
        emit contextMenuRequested(Pane::List, KeyboardMenuPosition());
        return;
    }
    if (QGuiApplication::mouseButtons() & Qt::RightButton) {
        m_pendingMenu = event->globalPos();
        return;
    }
    emit contextMenuRequested(Pane::List, event->globalPos());
}

void CListPane::mouseReleaseEvent(QMouseEvent* event)
{
    QTableView::mouseReleaseEvent(event);
    if (event->button() == Qt::RightButton && m_pendingMenu) {
        const QPoint position = *m_pendingMenu;
        m_pendingMenu.reset();
        emit contextMenuRequested(Pane::List, position);
    }
}

void CListPane::BuildColumns()
{
    const int unit = fontMetrics().horizontalAdvance(QStringLiteral("XXXXX"));
    const int columns = m_model->columnCount();
    for (int column = 0; column + 1 < columns; ++column)
        setColumnWidth(column, unit * m_model->ColumnWidthUnits(column));
}

int CListPane::FirstSelectedRow() const
{
    const std::vector<int> rows = SelectedRows();
    return rows.empty() ? -1 : rows.front();
}

void CListPane::SelectRow(int row)
{
    const QModelIndex index = m_model->index(row, 0);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                 QItemSelectionModel::Rows);
}

} // namespace tarvix
