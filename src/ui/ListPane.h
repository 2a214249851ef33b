#pragma once

#include "ui/CommandId.h"
#include "ui/CommandState.h"
#include "ui/Node.h"

#include <QTableView>

#include <optional>
#include <vector>

namespace tarvix {

class CListModel;
class IPendingCommands;
struct ViewContext;

// The right pane: the list of what CurrentNode holds, in one of four
// layouts. Activating a row opens what is behind it.
class CListPane : public QTableView {
    Q_OBJECT
public:
    CListPane(ViewContext& context, IPendingCommands& pending, QWidget* parent = nullptr);

    CListModel& Model() { return *m_model; }
    // Rebuilds or redraws for CurrentNode.
    void RefreshList();
    // Redraws one row, or every row for -1.
    void RefreshListItem(int row);
    bool HasSelection() const;
    std::vector<int> SelectedRows() const;
    // Focus arriving from the tree: with nothing selected the first row is.
    void TakeFocusFromTree();
    // Double-click (with its column), Enter or F2 (column -1) on a row.
    void ActivateRow(int row, int column);
    void HandleCommand(CommandId id);
    // Makes row the current and only selected row.
    void SelectRow(int row);
    QPoint KeyboardMenuPosition() const;

signals:
    void switchPaneRequested(tarvix::Pane pane);
    void selectNodeRequested(tarvix::Node node);
    void commandRequested(tarvix::CommandId id);
    // The document changed through the list; the title and status redraw.
    void documentChanged();
    void updateRequested();
    void contextMenuRequested(tarvix::Pane pane, QPoint globalPos);

protected:
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    // The list moves by rows: Home and End go to the first and last row,
    // Left and Right stay, the current cell is always the row's first.
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    // Ctrl with a moving key selects as the key alone does; Shift extends.
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;

private:
    void BuildColumns();
    int FirstSelectedRow() const;

    ViewContext& m_context;
    IPendingCommands& m_pending;
    CListModel* m_model;
    // A menu asked for while the right button is still down opens on release.
    std::optional<QPoint> m_pendingMenu;
};

} // namespace tarvix
