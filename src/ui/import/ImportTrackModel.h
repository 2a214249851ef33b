#pragma once

#include <QAbstractTableModel>

#include <vector>

namespace tarvix {

class CMidiImport;

// The import dialog's rows: one per track of the request's file, a tick in
// the first column. Every change of the rows or the ticks gives the ticked
// tracks their device tracks again before anything is drawn.
class CImportTrackModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit CImportTrackModel(CMidiImport& request, QObject* parent = nullptr);

    // After the request's file changed: one row per track, ticked as a new
    // file starts.
    void Reload();
    const std::vector<bool>& Ticks() const { return m_ticks; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void Assign();

    CMidiImport& m_request;
    std::vector<bool> m_ticks;
};

} // namespace tarvix
