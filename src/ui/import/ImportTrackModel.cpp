#include "ui/import/ImportTrackModel.h"

#include "midifile/ImportTrackList.h"
#include "midifile/MidiImport.h"
#include "ui/TrackDumpView.h"

namespace tarvix {

namespace {
constexpr int kTickColumn = static_cast<int>(ImportColumn::Tick);
} // namespace

CImportTrackModel::CImportTrackModel(CMidiImport& request, QObject* parent)
    : QAbstractTableModel(parent), m_request(request)
{
    Reload();
}

void CImportTrackModel::Reload()
{
    beginResetModel();
    m_ticks = GetInitialTicks(m_request.file);
    Assign();
    endResetModel();
}

void CImportTrackModel::Assign()
{
    AssignDeviceTracks(m_request.file, m_ticks, m_request.trackMask);
}

int CImportTrackModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_ticks.size());
}

int CImportTrackModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(GetImportColumns().size());
}

QVariant CImportTrackModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const auto row = static_cast<std::size_t>(index.row());
    if (role == Qt::CheckStateRole && index.column() == kTickColumn)
        return m_ticks[row] ? Qt::Checked : Qt::Unchecked;
    if (role != Qt::DisplayRole || index.column() == kTickColumn)
        return {};
    const std::string text =
        GetImportCellText(m_request.file, row, static_cast<ImportColumn>(index.column()));
    // A track name is whatever bytes the file holds.
    return CTrackDumpView::DecodeText(text);
}

bool CImportTrackModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || index.row() >= rowCount() || index.column() != kTickColumn ||
        role != Qt::CheckStateRole)
        return false;
    m_ticks[static_cast<std::size_t>(index.row())] =
        static_cast<Qt::CheckState>(value.toInt()) == Qt::Checked;
    Assign();
    // One tick moves the device tracks of every row after it.
    emit dataChanged(this->index(0, 0), this->index(rowCount() - 1, columnCount() - 1));
    return true;
}

Qt::ItemFlags CImportTrackModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (index.isValid() && index.column() == kTickColumn)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

QVariant CImportTrackModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const auto columns = GetImportColumns();
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        static_cast<std::size_t>(section) >= columns.size())
        return {};
    return QString::fromLatin1(columns[static_cast<std::size_t>(section)].title);
}

} // namespace tarvix
