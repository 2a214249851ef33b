// The Import command and its "MIDI File Import" dialog: the request from
// the selection, the file asked for at once, the rows, their ticks and
// device tracks, the options and the settings, the track dump, the import.
#include "EditorTestBase.h"
#include "support/MidiFileBuilders.h"

#include "framework/DialogRunner.h"
#include "framework/FileDialog.h"
#include "framework/MessageBox.h"
#include "framework/TextReportDialog.h"
#include "settings/ImportOptionSettings.h"
#include "settings/Settings.h"
#include "ui/TreePane.h"
#include "ui/import/ImportTrackModel.h"
#include "ui/import/MidiImportDialog.h"

#include <QCheckBox>
#include <QFile>
#include <QHeaderView>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

#include <functional>

namespace tarvix::testing {
namespace {

using Events = std::vector<std::unique_ptr<CMidiEvent>>;

template <typename... Made> Events EventsOf(Made... made)
{
    Events events;
    (events.push_back(std::move(made)), ...);
    return events;
}

// The dialog as a test sees it: its rows as text, one line each:
// "[x] MIDI Track | MMT8 Track | events".
QStringList Rows(CMidiImportDialog& dialog)
{
    CImportTrackModel& model = dialog.Tracks();
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        const bool ticked = model.index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked;
        rows << QStringLiteral("%1 %2 | %3 | %4")
                    .arg(ticked ? QStringLiteral("[x]") : QStringLiteral("[ ]"),
                         model.index(row, 1).data().toString(),
                         model.index(row, 2).data().toString(),
                         model.index(row, 3).data().toString());
    }
    return rows;
}

void Tick(CMidiImportDialog& dialog, int row, bool on)
{
    CImportTrackModel& model = dialog.Tracks();
    model.setData(model.index(row, 0), on ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
}

QCheckBox& Option(QDialog& dialog, const char* name)
{
    auto* box = dialog.findChild<QCheckBox*>(QString::fromLatin1(name));
    EXPECT_NE(box, nullptr) << name;
    return *box;
}

class ImportDialogTest : public EditorTest {
protected:
    void SetUp() override
    {
        StartOnSample();
        // A conductor track of meta events only, a named voice, an
        // unnamed voice, and SysEx alone.
        m_voices = WriteMidi("voices.mid", MakeFile(1, 96, [] {
                                 std::vector<Events> tracks;
                                 tracks.push_back(EventsOf(Meta(0, 3, Text("Conductor")),
                                                           Meta(0, 0x51, {0x07, 0xA1, 0x20})));
                                 tracks.push_back(EventsOf(Meta(0, 3, Text("Bass")),
                                                           Channel(0, 0x90, 0x3C, 0x64),
                                                           Channel(96, 0x80, 0x3C, 0)));
                                 tracks.push_back(EventsOf(Channel(48, 0x91, 0x40, 0x50)));
                                 tracks.push_back(EventsOf(Sysex(0, 0xF0, {0x41, 0x10, 0xF7})));
                                 return tracks;
                             }()));
    }

    QString WriteMidi(const char* name, CMidiFile file)
    {
        const Bytes bytes = testing::WriteMidi(file);
        QFile out(TempFile(name));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(reinterpret_cast<const char*>(bytes.data()),
                  static_cast<qsizetype>(bytes.size()));
        return out.fileName();
    }

    // Runs Import from the tree on node with the file chosen at once, and
    // hands the dialog to answer.
    void ImportInTree(Node node, const QString& file, std::function<int(CMidiImportDialog&)> answer)
    {
        Frame().Tree().SelectNode(node);
        Frame().SwitchPane(Pane::Tree);
        ImportWith(file, std::move(answer));
    }

    void ImportWith(const QString& file, std::function<int(CMidiImportDialog&)> answer)
    {
        CFileDialog::SetNextFileName(file);
        AnswerNextDialog([answer = std::move(answer)](QDialog& dialog) {
            auto* import = qobject_cast<CMidiImportDialog*>(&dialog);
            EXPECT_NE(import, nullptr);
            return import ? answer(*import) : int(QDialog::Rejected);
        });
        TriggerAction("fileImport");
    }

    const CSettingsKey& Key() { return m_app->Settings().GetKey(); }

    QString m_voices;
};

TEST_F(ImportDialogTest, ASelectionWithNothingToFillIsSaidSo)
{
    SelectInList({NodeKind::Part, 3}, {});
    Frame().ExecuteCommand(kCmdImport);
    EXPECT_EQ(CMessageBox::LastText(), QStringLiteral("No tracks selected."));
    // Song 20 has no steps, so no part to fill.
    Frame().Tree().SelectNode({NodeKind::Song, 20});
    Frame().SwitchPane(Pane::Tree);
    const int shown = CMessageBox::ShownCount();
    TriggerAction("fileImport");
    EXPECT_EQ(CMessageBox::ShownCount(), shown + 1);
    EXPECT_EQ(CMessageBox::LastText(), QStringLiteral("No parts selected."));
    EXPECT_EQ(CFileDialog::LastRequest().filter, QString());
}

TEST_F(ImportDialogTest, TheFileIsAskedForAtOnceAndCancellingItEndsTheImport)
{
    int dialogs = 0;
    CDialogRunner::SetNextResponder(
        [&dialogs](QDialog&) { return ++dialogs, int(QDialog::Accepted); });
    Frame().Tree().SelectNode({NodeKind::Part, 3});
    Frame().SwitchPane(Pane::Tree);
    TriggerAction("fileImport"); // the file dialog is cancelled unattended
    EXPECT_EQ(dialogs, 0);
    EXPECT_EQ(CFileDialog::LastRequest().filter, QStringLiteral("MIDI Files (*.mid)"));
    EXPECT_EQ(CFileDialog::LastRequest().defaultSuffix, QStringLiteral("mid"));
    EXPECT_EQ(Memory().modified, 0);
    CDialogRunner::ResetScript();
}

TEST_F(ImportDialogTest, RowsShowNamesDeviceTracksAndCountsWithMetaOnlyTracksUnticked)
{
    ImportInTree({NodeKind::Part, 3}, m_voices, [](CMidiImportDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("MIDI File Import"));
        EXPECT_EQ(Rows(dialog), (QStringList{
                                    QStringLiteral("[ ] Conductor |  | 2"),
                                    QStringLiteral("[x] Bass | Track 1 | 3"),
                                    QStringLiteral("[x] Track 3 | Track 2 | 1"),
                                    QStringLiteral("[x] Track 4 | Track 3 | 1"),
                                }));
        auto* list = dialog.findChild<QTreeView*>(QStringLiteral("trackList"));
        EXPECT_NE(list, nullptr);
        if (list == nullptr)
            return int(QDialog::Rejected);
        const int unit = list->fontMetrics().horizontalAdvance(QStringLiteral("XXX"));
        const QStringList titles = {QStringLiteral("  "), QStringLiteral("MIDI Track"),
                                    QStringLiteral("MMT8 Track"), QStringLiteral("MIDI Events")};
        const int widths[] = {1, 8, 4, 4};
        for (int column = 0; column < 4; ++column) {
            EXPECT_EQ(list->model()->headerData(column, Qt::Horizontal).toString(), titles[column]);
            EXPECT_EQ(list->columnWidth(column), widths[column] * unit) << column;
        }
        return int(QDialog::Rejected);
    });
    EXPECT_EQ(Memory().modified, 0);
}

TEST_F(ImportDialogTest, TickedTracksFillTheSelectedTrackRowsInOrderAsTicksChange)
{
    // Track rows 3 and 6: mask 0x24.
    SelectInList({NodeKind::Part, 3}, {2, 5});
    ImportWith(m_voices, [](CMidiImportDialog& dialog) {
        EXPECT_EQ(Rows(dialog), (QStringList{
                                    QStringLiteral("[ ] Conductor |  | 2"),
                                    QStringLiteral("[x] Bass | Track 3 | 3"),
                                    QStringLiteral("[x] Track 3 | Track 6 | 1"),
                                    QStringLiteral("[x] Track 4 |  | 1"),
                                }));
        Tick(dialog, 1, false);
        EXPECT_EQ(Rows(dialog), (QStringList{
                                    QStringLiteral("[ ] Conductor |  | 2"),
                                    QStringLiteral("[ ] Bass |  | 3"),
                                    QStringLiteral("[x] Track 3 | Track 3 | 1"),
                                    QStringLiteral("[x] Track 4 | Track 6 | 1"),
                                }));
        Tick(dialog, 0, true);
        EXPECT_TRUE(Rows(dialog)[0].endsWith(QStringLiteral("Conductor | Track 3 | 2")));
        EXPECT_TRUE(Rows(dialog)[2].endsWith(QStringLiteral("| Track 6 | 1")));
        EXPECT_TRUE(Rows(dialog)[3].endsWith(QStringLiteral("|  | 1")));
        return int(QDialog::Rejected);
    });
}

TEST_F(ImportDialogTest, OkImportsMarksTheDocumentAndRedraws)
{
    ImportInTree({NodeKind::Part, 20}, m_voices, [](CMidiImportDialog& dialog) {
        Tick(dialog, 3, false);
        return ClickOk(dialog);
    });
    const CMmt8Part& part = Memory().Part(20);
    EXPECT_EQ(part.name, "Conductor");
    ASSERT_EQ(part.tracks[0].events.size(), 1u);
    EXPECT_EQ(part.tracks[0].events[0]->data1, 0x3C);
    ASSERT_EQ(part.tracks[1].events.size(), 1u);
    EXPECT_EQ(part.tracks[1].events[0]->time, 48);
    EXPECT_TRUE(part.tracks[2].events.empty());
    EXPECT_EQ(Memory().modified, 1);
    EXPECT_TRUE(Frame().windowTitle().endsWith(QStringLiteral(" *")));
    EXPECT_TRUE(Frame()
                    .Tree()
                    .model()
                    ->index(20, 0, Frame().Tree().model()->index(0, 0))
                    .data()
                    .toString()
                    .endsWith(QStringLiteral("Conductor")));

    // One step back and forth.
    TriggerAction("editUndo");
    EXPECT_TRUE(Memory().Part(20).IsEmpty());
    EXPECT_TRUE(Memory().Part(20).tracks[0].events.empty());
    TriggerAction("editRedo");
    EXPECT_EQ(Memory().Part(20).name, "Conductor");
    EXPECT_EQ(Memory().Part(20).tracks[1].events.size(), 1u);
}

// 9,500 notes at their own clocks take more than the device's memory: the
// import asks first, and No leaves the document as it was.
TEST_F(ImportDialogTest, AResultTooLargeForTheDeviceIsImportedOnlyOnYes)
{
    const QString big = WriteMidi("big.mid", MakeFile(1, 96, [] {
                                      std::vector<Events> tracks(1);
                                      for (int i = 0; i < 9500; ++i)
                                          tracks[0].push_back(Channel(6, 0x90, 0x3C, 0x64));
                                      return tracks;
                                  }()));
    const std::string name = Memory().Part(20).name;
    const auto importBig = [&] {
        ImportInTree({NodeKind::Part, 20}, big,
                     [](CMidiImportDialog& dialog) { return ClickOk(dialog); });
    };

    CMessageBox::SetNextAnswer(QMessageBox::No);
    importBig();
    EXPECT_TRUE(CMessageBox::LastText().startsWith("After this import the memory would use "))
        << CMessageBox::LastText().toStdString();
    EXPECT_TRUE(CMessageBox::LastText().endsWith("device.\nImport anyway?"));
    EXPECT_EQ(CMessageBox::LastIcon(), QMessageBox::Question);
    EXPECT_EQ(Memory().Part(20).name, name);
    EXPECT_EQ(Memory().modified, 0);

    CMessageBox::SetNextAnswer(QMessageBox::Yes);
    importBig();
    EXPECT_EQ(Memory().Part(20).tracks[0].events.size(), 9500u);
    EXPECT_EQ(Memory().modified, 1);
}

TEST_F(ImportDialogTest, OptionsComeFromTheSettingsAndGoBackOnlyOnOk)
{
    Key().WriteDwordValue("ImportAftertouchEvents", 1);
    Key().WriteDwordValue("ImportMarkersAsParts", 0);
    ImportInTree({NodeKind::Part, 20}, m_voices, [](CMidiImportDialog& dialog) {
        EXPECT_TRUE(Option(dialog, "importAftertouch").isChecked());
        EXPECT_FALSE(Option(dialog, "importSysex").isChecked());
        EXPECT_FALSE(Option(dialog, "markersAsParts").isChecked());
        EXPECT_FALSE(Option(dialog, "startAtZero").isChecked());
        EXPECT_FALSE(Option(dialog, "ignoreChannel").isChecked());
        EXPECT_TRUE(Option(dialog, "explodeType0").isChecked());
        EXPECT_EQ(Option(dialog, "importSysex").text(), QStringLiteral("Import syse&x events"));
        EXPECT_EQ(Option(dialog, "ignoreChannel").text(),
                  QStringLiteral("Ignore set track &channel events"));
        Option(dialog, "importAftertouch").setChecked(false);
        Option(dialog, "importSysex").setChecked(true);
        return int(QDialog::Rejected);
    });
    MidiImportOptions stored = LoadImportOptions(Key());
    EXPECT_EQ(stored.importAftertouch, 1u);
    EXPECT_EQ(stored.importSysex, 0u);
    EXPECT_EQ(Memory().modified, 0);

    ImportInTree({NodeKind::Part, 20}, m_voices, [](CMidiImportDialog& dialog) {
        Option(dialog, "importSysex").setChecked(true);
        Option(dialog, "startAtZero").setChecked(true);
        return ClickOk(dialog);
    });
    stored = LoadImportOptions(Key());
    EXPECT_EQ(stored, (MidiImportOptions{1, 1, 0, 1, 0, 1}));
    // The SysEx track was imported: its event is now a device SysEx event.
    EXPECT_EQ(Memory().Part(20).tracks[2].events.size(), 1u);
}

TEST_F(ImportDialogTest, TheExplodeBoxReloadsAFormatZeroFile)
{
    const QString single =
        WriteMidi("single.mid", MakeFile(0, 96, [] {
                      std::vector<Events> tracks;
                      tracks.push_back(EventsOf(Meta(0, 3, Text("Take")), Channel(0, 0x90, 60, 100),
                                                Channel(0, 0x92, 64, 100), Channel(96, 0x80, 60, 0),
                                                Channel(0, 0x82, 64, 0)));
                      return tracks;
                  }()));
    ImportInTree({NodeKind::Part, 20}, single, [](CMidiImportDialog& dialog) {
        // Split: the meta events, then channels 1 and 3.
        EXPECT_EQ(dialog.Tracks().rowCount(), 3);
        Option(dialog, "explodeType0").setChecked(false);
        EXPECT_EQ(Rows(dialog), QStringList{QStringLiteral("[x] Take | Track 1 | 5")});
        Option(dialog, "explodeType0").setChecked(true);
        EXPECT_EQ(dialog.Tracks().rowCount(), 3);
        return int(QDialog::Rejected);
    });
}

TEST_F(ImportDialogTest, DoubleClickingARowShowsItsEvents)
{
    QString title;
    QString text;
    ImportInTree({NodeKind::Part, 20}, m_voices, [&title, &text](CMidiImportDialog& dialog) {
        CDialogRunner::SetNextResponder([&title, &text](QDialog& report) {
            title = report.windowTitle();
            if (auto* shown = qobject_cast<CTextReportDialog*>(&report))
                text = shown->ShownText();
            return int(QDialog::Rejected);
        });
        auto* list = dialog.findChild<QTreeView*>(QStringLiteral("trackList"));
        const QPoint row = list->visualRect(list->model()->index(1, 1)).center();
        // A widget's double click is the second press of two.
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row);
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, row);
        QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, row);
        return int(QDialog::Rejected);
    });
    EXPECT_EQ(title, QStringLiteral("MIDI Track Dump"));
    EXPECT_TRUE(text.contains(QStringLiteral("Midi 90 3C 64   Note on")));
    EXPECT_TRUE(text.contains(QStringLiteral("\r\n")));
    EXPECT_FALSE(text.contains(QStringLiteral("Header")));
    EXPECT_FALSE(text.contains(QStringLiteral("Track 2")));
}

TEST_F(ImportDialogTest, AFileThatCannotBeReadIsReportedAndTheDialogStaysUsable)
{
    const QString missing = TempFile("missing.mid");
    ImportInTree({NodeKind::Part, 20}, missing, [this, missing](CMidiImportDialog& dialog) {
        EXPECT_FALSE(CMessageBox::LastText().isEmpty());
        EXPECT_TRUE(CMessageBox::LastText().contains(QStringLiteral("missing.mid")))
            << CMessageBox::LastText().toStdString();
        EXPECT_EQ(dialog.Tracks().rowCount(), 0);
        EXPECT_FALSE(dialog.HasFile());
        // "..." asks again and this time a file loads.
        CFileDialog::SetNextFileName(m_voices);
        dialog.findChild<QPushButton*>(QStringLiteral("browseButton"))->click();
        EXPECT_EQ(CFileDialog::LastRequest().initialPath, missing);
        EXPECT_EQ(dialog.Tracks().rowCount(), 4);
        return ClickOk(dialog);
    });
    EXPECT_EQ(Memory().Part(20).name, "Conductor");
}

TEST_F(ImportDialogTest, OkWithoutALoadedFileChangesNothing)
{
    ImportInTree({NodeKind::Part, 3}, TempFile("missing.mid"),
                 [](CMidiImportDialog& dialog) { return ClickOk(dialog); });
    EXPECT_EQ(Memory().Part(3).name, "Bass line");
    EXPECT_EQ(Memory().modified, 0);
}

} // namespace
} // namespace tarvix::testing
