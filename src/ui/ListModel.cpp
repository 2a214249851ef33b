#include "ui/ListModel.h"

#include "model/ListCells.h"
#include "model/Mmt8Memory.h"
#include "ui/DeviceText.h"

namespace tarvix {

std::optional<ListKind> ListKindFor(NodeKind kind)
{
    switch (kind) {
    case NodeKind::AllParts: return ListKind::Parts;
    case NodeKind::Part: return ListKind::Tracks;
    case NodeKind::AllSongs: return ListKind::Songs;
    case NodeKind::Song: return ListKind::Steps;
    case NodeKind::None: break;
    }
    return std::nullopt;
}

namespace {
bool HasList(Node node)
{
    return ListKindFor(node.kind).has_value();
}
// Only called once HasList said yes.
ListKind ListOf(Node node)
{
    return ListKindFor(node.kind).value_or(ListKind::Parts);
}
} // namespace

CListModel::CListModel(CMmt8Memory& memory, QObject* parent)
    : QAbstractTableModel(parent), m_memory(memory)
{
}

int CListModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid() || !HasList(m_node))
        return 0;
    return GetListRowCount(m_memory, ListOf(m_node), m_node.index);
}

int CListModel::columnCount(const QModelIndex& parent) const
{
    if (parent.isValid() || !HasList(m_node))
        return 0;
    return static_cast<int>(GetListColumns(ListOf(m_node)).size());
}

QVariant CListModel::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const std::string text =
        GetListCellText(m_memory, ListOf(m_node), m_node.index, index.row(), index.column());
    return FromDeviceText(text);
}

QVariant CListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= columnCount())
        return {};
    return QString::fromLatin1(
        GetListColumns(ListOf(m_node))[static_cast<std::size_t>(section)].title);
}

bool CListModel::ShowNode(Node node)
{
    if (node.kind == m_node.kind && node.kind != NodeKind::Song) {
        m_node = node;
        RedrawRow(-1);
        return false;
    }
    beginResetModel();
    m_node = node;
    endResetModel();
    return true;
}

void CListModel::RedrawRow(int row)
{
    const int rows = rowCount();
    const int columns = columnCount();
    if (rows == 0 || columns == 0)
        return;
    if (row < 0)
        emit dataChanged(index(0, 0), index(rows - 1, columns - 1), {Qt::DisplayRole});
    else if (row < rows)
        emit dataChanged(index(row, 0), index(row, columns - 1), {Qt::DisplayRole});
}

int CListModel::ColumnWidthUnits(int column) const
{
    if (column < 0 || column >= columnCount())
        return 0;
    return GetListColumns(ListOf(m_node))[static_cast<std::size_t>(column)].widthUnits;
}

} // namespace tarvix
