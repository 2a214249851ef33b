#include "ui/import/MidiImportDialog.h"

#include "framework/DialogRunner.h"
#include "framework/MessageBox.h"
#include "midifile/ImportTrackList.h"
#include "midifile/MidiDumpSink.h"
#include "midifile/MidiFileException.h"
#include "midifile/MidiImport.h"
#include "settings/ImportOptionSettings.h"
#include "ui/MidiFileRequest.h"
#include "ui/TrackDumpView.h"
#include "ui/import/ImportTrackModel.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

namespace tarvix {

namespace {

struct OptionBox {
    const char* text;
    const char* objectName;
    std::uint32_t MidiImportOptions::*value;
};

// In the options' own order; the last one is the explode box.
constexpr std::array<OptionBox, 6> kOptionBoxes = {{
    {"Import &aftertouch events", "importAftertouch", &MidiImportOptions::importAftertouch},
    {"Import syse&x events", "importSysex", &MidiImportOptions::importSysex},
    {"Import &markers as parts", "markersAsParts", &MidiImportOptions::markersAsParts},
    {"Set &first event time to zero", "startAtZero", &MidiImportOptions::startAtZero},
    {"Ignore set track &channel events", "ignoreChannel", &MidiImportOptions::ignoreChannel},
    {"&Explode Type0 Midi files", "explodeType0", &MidiImportOptions::explodeType0},
}};
constexpr std::size_t kExplodeBox = 5;

} // namespace

CMidiImportDialog::CMidiImportDialog(CMidiImport& request, const CSettingsKey& key,
                                     const CTrackDumpView& view, QWidget* parent)
    : QDialog(parent), m_request(request), m_key(key), m_view(view),
      m_model(new CImportTrackModel(request, this))
{
    setObjectName(QStringLiteral("midiImportDialog"));
    setWindowTitle(QString::fromLatin1(kTitle));
    BuildLayout();
    const MidiImportOptions stored = LoadImportOptions(m_key);
    for (std::size_t i = 0; i < kOptionBoxes.size(); ++i)
        m_options[i]->setChecked(stored.*kOptionBoxes[i].value != 0);
    m_request.options = stored;
    connect(m_options[kExplodeBox], &QCheckBox::toggled, this,
            &CMidiImportDialog::OnExplodeToggled);
}

void CMidiImportDialog::BuildLayout()
{
    auto* fileLabel = new QLabel(tr("&Standard MIDI File to import tracks from:"), this);
    m_fileEdit = new QLineEdit(this);
    m_fileEdit->setObjectName(QStringLiteral("fileEdit"));
    fileLabel->setBuddy(m_fileEdit);
    m_browseButton = new QPushButton(QStringLiteral("..."), this);
    m_browseButton->setObjectName(QStringLiteral("browseButton"));
    m_browseButton->setAutoDefault(false);
    m_browseButton->setMaximumWidth(
        m_browseButton->fontMetrics().horizontalAdvance(QStringLiteral("XXXXX")));
    connect(m_browseButton, &QPushButton::clicked, this, &CMidiImportDialog::Browse);
    auto* fileRow = new QHBoxLayout;
    fileRow->addWidget(m_fileEdit, 1);
    fileRow->addWidget(m_browseButton);

    m_list = new QTreeView(this);
    m_list->setObjectName(QStringLiteral("trackList"));
    m_list->setModel(m_model);
    const int unit = m_list->fontMetrics().horizontalAdvance(QStringLiteral("XXX"));
    m_list->setRootIsDecorated(false);
    m_list->setItemsExpandable(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setMinimumSectionSize(unit);
    m_list->header()->setSectionsMovable(false);
    int listWidth = 0;
    const auto columns = GetImportColumns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        m_list->setColumnWidth(static_cast<int>(i), columns[i].width * unit);
        listWidth += columns[i].width * unit;
    }
    m_list->setMinimumWidth(listWidth + 2 * m_list->frameWidth() + 24);
    connect(m_list, &QTreeView::doubleClicked, this,
            [this](const QModelIndex& index) { ShowTrackDump(index.row()); });

    auto* optionGrid = new QGridLayout;
    for (std::size_t i = 0; i < kOptionBoxes.size(); ++i) {
        auto* box = new QCheckBox(tr(kOptionBoxes[i].text), this);
        box->setObjectName(QString::fromLatin1(kOptionBoxes[i].objectName));
        optionGrid->addWidget(box, static_cast<int>(i % 3), static_cast<int>(i / 3));
        m_options[i] = box;
    }

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(fileLabel);
    layout->addLayout(fileRow);
    layout->addWidget(m_list, 1);
    layout->addLayout(optionGrid);
    layout->addWidget(buttons);
}

int CMidiImportDialog::Run(const QString& file)
{
    // Modal from the start, so that the window behind stays out of reach
    // while the file is chosen over this dialog.
    setWindowModality(Qt::ApplicationModal);
    show();
    if (file.isEmpty()) {
        if (!Browse()) {
            hide();
            return Rejected;
        }
    } else {
        LoadFile(file);
    }
    return CDialogRunner::Exec(*this);
}

bool CMidiImportDialog::Browse()
{
    const QString path =
        CFileDialog::GetOpenFileName(this, MidiFileRequest(tr("Open"), m_fileEdit->text()));
    if (path.isEmpty())
        return false;
    LoadFile(path);
    return true;
}

void CMidiImportDialog::LoadFile(const QString& path)
{
    m_fileEdit->setText(path);
    m_request.sourcePath = path.toStdString();
    m_request.options.explodeType0 = m_options[kExplodeBox]->isChecked() ? 1 : 0;
    QString failure;
    try {
        m_wasSplit = LoadImportFile(m_request);
        m_loaded = true;
    } catch (const CMidiFileException& exception) {
        m_wasSplit = false;
        m_loaded = false;
        failure = QString::fromStdString(exception.GetMessage());
    }
    m_model->Reload();
    if (!failure.isEmpty())
        CMessageBox::Report(this, failure);
}

void CMidiImportDialog::OnExplodeToggled(bool on)
{
    m_request.options.explodeType0 = on ? 1 : 0;
    if (m_loaded && ExplodeChangeReloads(m_wasSplit, m_request.file))
        LoadFile(QString::fromStdString(m_request.sourcePath));
}

void CMidiImportDialog::ShowTrackDump(int row)
{
    if (row < 0 || static_cast<std::size_t>(row) >= m_request.file.tracks.size())
        return;
    const CMidiTrack* track = m_request.file.tracks[static_cast<std::size_t>(row)].get();
    if (track == nullptr)
        return;
    CMidiDumpSink sink;
    sink.SetShown(true, true, true);
    for (const auto& event : track->events)
        if (event)
            event->Dump(sink);
    m_view.ShowText(this, QString::fromLatin1(kTrackDumpTitle), sink.GetTextView());
}

MidiImportOptions CMidiImportDialog::CheckedOptions() const
{
    MidiImportOptions options;
    for (std::size_t i = 0; i < kOptionBoxes.size(); ++i)
        options.*kOptionBoxes[i].value = m_options[i]->isChecked() ? 1 : 0;
    return options;
}

void CMidiImportDialog::accept()
{
    // A name typed into the field is loaded first, so its tracks are seen
    // before anything is imported.
    const QString typed = m_fileEdit->text();
    if (!typed.isEmpty() && typed.toStdString() != m_request.sourcePath) {
        LoadFile(typed);
        return;
    }
    m_request.options = CheckedOptions();
    StoreImportOptions(m_key, m_request.options);
    QDialog::accept();
}

} // namespace tarvix
