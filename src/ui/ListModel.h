#pragma once

#include "model/ListCells.h"
#include "ui/Node.h"

#include <QAbstractTableModel>

#include <optional>

namespace tarvix {

class CMmt8Memory;

// The list a tree node shows: the part list, a part's tracks, the song list
// or a song's steps; none for an empty selection.
std::optional<ListKind> ListKindFor(NodeKind kind);

// The list pane's rows and columns for one tree node: the part list, a
// part's tracks, the song list or a song's steps. Every cell is computed
// from the document when asked, with the same texts tarvix-cli prints.
class CListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit CListModel(CMmt8Memory& memory, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    // Shows node. The same kind as before (other than a song's steps, whose
    // row count varies) only redraws; anything else rebuilds the columns and
    // rows. Returns whether it rebuilt.
    bool ShowNode(Node node);
    // Every cell is drawn again; row -1 is the whole list.
    void RedrawRow(int row);

    Node ShownNode() const { return m_node; }
    // The width of each column in units of "XXXXX"; 0 fills the rest.
    int ColumnWidthUnits(int column) const;

private:
    CMmt8Memory& m_memory;
    Node m_node;
};

} // namespace tarvix
