#include "ui/TreePane.h"

#include "ui/DeviceNameValidator.h"
#include "ui/NavigationModel.h"
#include "ui/PendingCommands.h"
#include "ui/ViewContext.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyledItemDelegate>

namespace tarvix {

namespace {
// The in-place name field keeps to what the device can show.
class CNameDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override
    {
        QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
        if (auto* field = qobject_cast<QLineEdit*>(editor))
            ApplyDeviceNameRules(*field);
        return editor;
    }
};
} // namespace

CTreePane::CTreePane(ViewContext& context, IPendingCommands& pending, QWidget* parent)
    : QTreeView(parent), m_context(context), m_pending(pending),
      m_model(new CNavigationModel(context.memory, context.history, this))
{
    setObjectName(QStringLiteral("treePane"));
    setModel(m_model);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setItemDelegate(new CNameDelegate(this));
    setUniformRowHeights(true);
    setTabKeyNavigation(false);
    header()->setStretchLastSection(true);
    header()->setSectionsClickable(false);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CTreePane::OnSelectionChanged);
}

void CTreePane::RefreshTree()
{
    m_model->Redraw();
}

void CTreePane::SelectNode(Node node)
{
    const QModelIndex index = m_model->IndexOf(node);
    if (!index.isValid())
        return;
    setCurrentIndex(index);
    scrollTo(index);
}

bool CTreePane::HasSelection() const
{
    return selectionModel()->hasSelection();
}

void CTreePane::HandleCommand(CommandId id)
{
    if (id == kCmdRename) {
        const QModelIndex current = currentIndex();
        if (current.isValid() && HasSelection())
            edit(current);
        return;
    }
    m_pending.PaneCommand(id, {Pane::Tree, m_context.currentNode, {}});
}

QPoint CTreePane::KeyboardMenuPosition() const
{
    const QModelIndex current = currentIndex();
    if (current.isValid() && HasSelection()) {
        const QRect item = visualRect(current);
        return viewport()->mapToGlobal(item.bottomLeft());
    }
    return mapToGlobal(rect().center() - QPoint(80, 80));
}

void CTreePane::OnSelectionChanged()
{
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    m_context.currentNode =
        selected.isEmpty() ? Node{} : CNavigationModel::NodeAt(selected.constFirst());
    emit nodeChanged(m_context.currentNode);
}

bool CTreePane::focusNextPrevChild(bool)
{
    if (m_editingLabel)
        return QTreeView::focusNextPrevChild(true);
    emit switchPaneRequested(Pane::List);
    return true;
}

void CTreePane::keyPressEvent(QKeyEvent* event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        event->modifiers() == Qt::NoModifier && !m_editingLabel) {
        emit switchPaneRequested(Pane::List);
        return;
    }
    // The keyboard's other way to the context menu (the Menu key arrives as
    // a context menu event of its own).
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier && !m_editingLabel) {
        emit contextMenuRequested(Pane::Tree, KeyboardMenuPosition());
        return;
    }
    QTreeView::keyPressEvent(event);
}

void CTreePane::contextMenuEvent(QContextMenuEvent* event)
{
    QPoint position = event->globalPos();
    if (event->reason() == QContextMenuEvent::Mouse) {
        const QModelIndex under = indexAt(viewport()->mapFromGlobal(event->globalPos()));
        if (under.isValid())
            setCurrentIndex(under);
    } else {
        position = KeyboardMenuPosition();
    }
    emit contextMenuRequested(Pane::Tree, position);
}

bool CTreePane::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event)
{
    // Only one part or one song has a name to edit; the roots refuse.
    const bool started = QTreeView::edit(index, trigger, event);
    if (started && !m_editingLabel) {
        m_editingLabel = true;
        emit updateRequested();
    }
    return started;
}

void CTreePane::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint)
{
    QTreeView::closeEditor(editor, hint);
    if (m_editingLabel) {
        m_editingLabel = false;
        emit updateRequested();
    }
}

} // namespace tarvix
