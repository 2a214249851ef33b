#include "ui/NavigationModel.h"

#include "model/ListCells.h"
#include "model/Mmt8Limits.h"
#include "model/Mmt8Memory.h"
#include "ui/DeviceText.h"
#include "ui/undo/UndoSteps.h"

namespace tarvix {

namespace {
constexpr int kPartsRow = 0;
constexpr int kSongsRow = 1;

bool IsRoot(Node node)
{
    return node.kind == NodeKind::AllParts || node.kind == NodeKind::AllSongs;
}
bool IsLeaf(Node node)
{
    return node.kind == NodeKind::Part || node.kind == NodeKind::Song;
}

} // namespace

CNavigationModel::CNavigationModel(CMmt8Memory& memory, CDocumentHistory& history, QObject* parent)
    : QAbstractItemModel(parent), m_memory(memory), m_history(history)
{
}

QModelIndex CNavigationModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    if (!parent.isValid()) {
        const Node root{row == kPartsRow ? NodeKind::AllParts : NodeKind::AllSongs, 0};
        return createIndex(row, column, static_cast<quintptr>(ToNodeValue(root)));
    }
    const Node parentNode = NodeAt(parent);
    const Node child{parentNode.kind == NodeKind::AllParts ? NodeKind::Part : NodeKind::Song, row};
    return createIndex(row, column, static_cast<quintptr>(ToNodeValue(child)));
}

QModelIndex CNavigationModel::parent(const QModelIndex& child) const
{
    const Node node = NodeAt(child);
    if (node.kind == NodeKind::Part)
        return createIndex(kPartsRow, 0,
                           static_cast<quintptr>(ToNodeValue({NodeKind::AllParts, 0})));
    if (node.kind == NodeKind::Song)
        return createIndex(kSongsRow, 0,
                           static_cast<quintptr>(ToNodeValue({NodeKind::AllSongs, 0})));
    return {};
}

int CNavigationModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return 2;
    if (parent.column() != 0)
        return 0;
    const Node node = NodeAt(parent);
    if (node.kind == NodeKind::AllParts)
        return kPartCount;
    if (node.kind == NodeKind::AllSongs)
        return kSongCount;
    return 0;
}

int CNavigationModel::columnCount(const QModelIndex&) const
{
    return 1;
}

QVariant CNavigationModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const Node node = NodeAt(index);
    if (role == Qt::DisplayRole) {
        if (IsRoot(node))
            return node.kind == NodeKind::AllParts ? tr("Parts") : tr("Songs");
        // The part and song lists show names made safe for one line.
        const ListKind list = node.kind == NodeKind::Part ? ListKind::Parts : ListKind::Songs;
        const std::string name = GetListCellText(m_memory, list, 0, node.index, 1);
        return QStringLiteral("%1  %2")
            .arg(node.index, 2, 10, QLatin1Char('0'))
            .arg(FromDeviceText(name));
    }
    if (role == Qt::EditRole && IsLeaf(node))
        return FromDeviceText(node.kind == NodeKind::Part ? m_memory.Part(node.index).name
                                                          : m_memory.Song(node.index).name);
    return {};
}

bool CNavigationModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const Node node = NodeAt(index);
    if (role != Qt::EditRole || !IsLeaf(node))
        return false;
    const QByteArray name = value.toString().toLatin1();
    const std::string_view text(name.constData(), static_cast<std::size_t>(name.size()));
    bool set = false;
    m_history.Record(*UndoStepFor(kCmdRename), [&] {
        set = node.kind == NodeKind::Part ? m_memory.SetPartName(node.index, text)
                                          : m_memory.SetSongName(node.index, text);
        if (set)
            m_memory.modified = 1;
    });
    if (!set)
        return false;
    emit dataChanged(index, index);
    emit renamed(node);
    return true;
}

Qt::ItemFlags CNavigationModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (IsLeaf(NodeAt(index)))
        flags |= Qt::ItemIsEditable | Qt::ItemNeverHasChildren;
    return flags;
}

QVariant CNavigationModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section == 0 && orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return tr("Alesis MMT8");
    return {};
}

Node CNavigationModel::NodeAt(const QModelIndex& index)
{
    if (!index.isValid())
        return {};
    return FromNodeValue(static_cast<std::uint32_t>(index.internalId()));
}

QModelIndex CNavigationModel::IndexOf(Node node) const
{
    switch (node.kind) {
    case NodeKind::AllParts: return index(kPartsRow, 0);
    case NodeKind::AllSongs: return index(kSongsRow, 0);
    case NodeKind::Part: return index(node.index, 0, index(kPartsRow, 0));
    case NodeKind::Song: return index(node.index, 0, index(kSongsRow, 0));
    case NodeKind::None: break;
    }
    return {};
}

void CNavigationModel::Redraw()
{
    for (int row : {kPartsRow, kSongsRow}) {
        const QModelIndex root = index(row, 0);
        emit dataChanged(root, root, {Qt::DisplayRole});
        emit dataChanged(index(0, 0, root), index(rowCount(root) - 1, 0, root), {Qt::DisplayRole});
    }
}

} // namespace tarvix
