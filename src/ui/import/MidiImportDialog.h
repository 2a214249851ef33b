#pragma once

#include <QDialog>

#include <array>

class QCheckBox;
class QLineEdit;
class QPushButton;
class QTreeView;

namespace tarvix {

class CImportTrackModel;
class CMidiImport;
class CSettingsKey;
class CTrackDumpView;
struct MidiImportOptions;

// "MIDI File Import": asks for the file at once, lists its tracks to tick,
// shows the device track each ticked one fills, and keeps the six options,
// which it reads from the settings and writes back only on OK. A file that
// cannot be read is reported and leaves the list empty; the dialog stays
// open for another choice.
class CMidiImportDialog : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* kTitle = "MIDI File Import";
    static constexpr const char* kTrackDumpTitle = "MIDI Track Dump";

    // The request's destination and track mask are set; the dialog fills
    // in the file, the device tracks and the options.
    CMidiImportDialog(CMidiImport& request, const CSettingsKey& key, const CTrackDumpView& view,
                      QWidget* parent = nullptr);

    // Shows the dialog and asks for the file over it, or loads the given
    // one, then runs it; Rejected when the file dialog was cancelled.
    int Run(const QString& file = {});
    // Whether a file is loaded, so that OK has something to import.
    bool HasFile() const { return m_loaded; }
    CImportTrackModel& Tracks() { return *m_model; }

    void accept() override;

private:
    void BuildLayout();
    bool Browse();
    void LoadFile(const QString& path);
    void OnExplodeToggled(bool on);
    void ShowTrackDump(int row);
    MidiImportOptions CheckedOptions() const;

    CMidiImport& m_request;
    const CSettingsKey& m_key;
    const CTrackDumpView& m_view;
    CImportTrackModel* m_model;
    QLineEdit* m_fileEdit = nullptr;
    QPushButton* m_browseButton = nullptr;
    QTreeView* m_list = nullptr;
    std::array<QCheckBox*, 6> m_options{};
    bool m_loaded = false;
    bool m_wasSplit = false;
};

} // namespace tarvix
