// The Export command through the window: every kind of selection writes a
// Standard MIDI File, empty choices and write failures are reported, and an
// exported part comes back through the import dialog.
#include "EditorTestBase.h"

#include "framework/FileDialog.h"
#include "framework/MessageBox.h"
#include "midifile/MidiExport.h"
#include "model/EventBuilders.h"
#include "support/RandomDocument.h"
#include "ui/ListPane.h"
#include "ui/TreePane.h"
#include "ui/import/MidiImportDialog.h"

#include <QCheckBox>
#include <QFile>

namespace tarvix::testing {
namespace {

class ExportCommandTest : public EditorTest {
protected:
    void SetUp() override { StartOnSample(); }

    void SelectInTree(Node node)
    {
        Frame().Tree().SelectNode(node);
        Frame().SwitchPane(Pane::Tree);
    }

    // Exports what is selected into a file of the test's folder.
    QString Export(const char* name)
    {
        const QString path = TempFile(name);
        CFileDialog::SetNextFileName(path);
        TriggerAction("fileExport");
        return path;
    }

    static QByteArray Contents(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

TEST_F(ExportCommandTest, EveryKindOfSelectionWritesAMidiFile)
{
    // A node alone is selected in the tree, a node with rows in the list.
    struct Case {
        const char* name;
        Node node;
        std::vector<int> rows;
    };
    const Case cases[] = {
        {"all-parts.mid", {NodeKind::AllParts, 0}, {}},  {"part.mid", {NodeKind::Part, 3}, {}},
        {"all-songs.mid", {NodeKind::AllSongs, 0}, {}},  {"song.mid", {NodeKind::Song, 7}, {}},
        {"parts.mid", {NodeKind::AllParts, 0}, {3, 12}}, {"tracks.mid", {NodeKind::Part, 3}, {1}},
        {"songs.mid", {NodeKind::AllSongs, 0}, {7}},     {"steps.mid", {NodeKind::Song, 7}, {0, 1}},
    };
    for (const Case& c : cases) {
        if (c.rows.empty())
            SelectInTree(c.node);
        else
            SelectInList(c.node, c.rows);
        const int reported = CMessageBox::ShownCount();
        const QByteArray bytes = Contents(Export(c.name));
        EXPECT_TRUE(bytes.startsWith("MThd")) << c.name;
        EXPECT_EQ(CMessageBox::ShownCount(), reported) << c.name;
        EXPECT_EQ(CFileDialog::LastRequest().filter, QStringLiteral("MIDI Files (*.mid)"));
        EXPECT_EQ(CFileDialog::LastRequest().defaultSuffix, QStringLiteral("mid"));
    }
    EXPECT_EQ(Memory().modified, 0);
}

TEST_F(ExportCommandTest, NothingToExportIsSaidBeforeAFileIsAskedFor)
{
    CFileDialog::ResetScript();
    CFileDialog::SetUnattended(true);
    SelectInTree({NodeKind::Part, 50});
    TriggerAction("fileExport");
    EXPECT_EQ(CMessageBox::LastText() + QLatin1Char('\n'),
              QString::fromLatin1(kNothingToExportParts));
    SelectInTree({NodeKind::Song, 20});
    TriggerAction("fileExport");
    EXPECT_EQ(CMessageBox::LastText() + QLatin1Char('\n'),
              QString::fromLatin1(kNothingToExportSongs));
    EXPECT_EQ(CFileDialog::LastRequest().filter, QString());
}

TEST_F(ExportCommandTest, AFileThatCannotBeWrittenIsReported)
{
    SelectInTree({NodeKind::Part, 3});
    const QString path = TempFile("no-such-folder/part.mid");
    CFileDialog::SetNextFileName(path);
    TriggerAction("fileExport");
    EXPECT_TRUE(CMessageBox::LastText().contains(path)) << CMessageBox::LastText().toStdString();
    EXPECT_FALSE(QFile::exists(path));

    // Cancelling the file dialog writes nothing and says nothing.
    const int reported = CMessageBox::ShownCount();
    TriggerAction("fileExport");
    EXPECT_EQ(CMessageBox::ShownCount(), reported);
}

TEST_F(ExportCommandTest, AnExportedPartComesBackThroughTheImportDialog)
{
    // The sample's "Bass line" with a channel set on track 2, and a
    // controller, a program, a bend and aftertouch on track 1.
    CMmt8Track& first = Memory().Part(3).tracks[0];
    first.events.push_back(test::Make<CMmt8ControlEvent>(0, 2, 7, 100));
    first.events.push_back(test::Make<CMmt8ProgramEvent>(48, 2, 5));
    first.events.push_back(test::Bend(96, 0x4000, 2));
    first.events.push_back(test::Make<CMmt8AftertouchEvent>(120, 2, 64));
    const CMmt8Part original = Memory().Part(3);
    SelectInTree({NodeKind::Part, 3});
    const QString file = Export("round-trip.mid");

    SelectInTree({NodeKind::Part, 40});
    CFileDialog::SetNextFileName(file);
    AnswerNextDialog([](QDialog& dialog) {
        dialog.findChild<QCheckBox*>(QStringLiteral("importAftertouch"))->setChecked(true);
        dialog.findChild<QCheckBox*>(QStringLiteral("importSysex"))->setChecked(true);
        return ClickOk(dialog);
    });
    TriggerAction("fileImport");

    // The import measures the length from the latest event.
    CMmt8Memory expected;
    CMmt8Memory back;
    expected.Part(0) = original;
    expected.RecomputePartBeats(0);
    // Track 2's notes come back on its channel 5, where the device plays them.
    for (auto& event : expected.Part(0).tracks[1].events)
        event->channel = 4;
    back.Part(0) = Memory().Part(40);
    EXPECT_EQ(DescribeDifference(expected, back), "");
    EXPECT_EQ(Memory().modified, 1);
}

} // namespace
} // namespace tarvix::testing
