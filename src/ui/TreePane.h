#pragma once

#include "ui/CommandId.h"
#include "ui/CommandState.h"
#include "ui/Node.h"

#include <QTreeView>

namespace tarvix {

class CNavigationModel;
class IPendingCommands;
struct ViewContext;

// The left pane: the navigation tree. Selecting an item sets CurrentNode
// and announces the node change; one part or one song can be renamed in
// place.
class CTreePane : public QTreeView {
    Q_OBJECT
public:
    CTreePane(ViewContext& context, IPendingCommands& pending, QWidget* parent = nullptr);

    CNavigationModel& Model() { return *m_model; }
    // Redraws every label from the document.
    void RefreshTree();
    // Selects the item of node and scrolls it into view; the selection
    // change then sets CurrentNode.
    void SelectNode(Node node);
    bool HasSelection() const;
    bool IsEditingLabel() const { return m_editingLabel; }
    using QTreeView::edit;
    void HandleCommand(CommandId id);
    // Where a context menu opened from the keyboard appears.
    QPoint KeyboardMenuPosition() const;

signals:
    void nodeChanged(tarvix::Node node);
    void switchPaneRequested(tarvix::Pane pane);
    void updateRequested();
    void contextMenuRequested(tarvix::Pane pane, QPoint globalPos);

protected:
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    void OnSelectionChanged();

    ViewContext& m_context;
    IPendingCommands& m_pending;
    CNavigationModel* m_model;
    bool m_editingLabel = false;
};

} // namespace tarvix
