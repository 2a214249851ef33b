#pragma once

#include "ui/Node.h"

#include <QAbstractItemModel>

namespace tarvix {

class CDocumentHistory;
class CMmt8Memory;

// The fixed tree: "Parts" with the 100 parts, "Songs" with the 100 songs.
// Labels are computed from the document whenever the view asks, so a
// rename or a load shows on the next redraw. Only one part or one song can
// be renamed in place; the edit text is the bare name.
class CNavigationModel : public QAbstractItemModel {
    Q_OBJECT
public:
    // Renames go through history as undo steps.
    CNavigationModel(CMmt8Memory& memory, CDocumentHistory& history, QObject* parent = nullptr);

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    static Node NodeAt(const QModelIndex& index);
    QModelIndex IndexOf(Node node) const;
    // Every label is redrawn from the document.
    void Redraw();

signals:
    // A part or song was renamed in place; the document is marked modified.
    void renamed(tarvix::Node node);

private:
    CMmt8Memory& m_memory;
    CDocumentHistory& m_history;
};

} // namespace tarvix
