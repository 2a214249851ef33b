// Files dropped on the window: a .syx file opens, a .mid file is imported
// into what it was dropped on.
#include "EditorTestBase.h"
#include "support/MidiFileBuilders.h"

#include "framework/FileDialog.h"
#include "framework/MessageBox.h"
#include "framework/RecentFileList.h"
#include "ui/ListPane.h"
#include "ui/TreePane.h"
#include "ui/dragdrop/FileDropHandler.h"
#include "ui/import/ImportTrackModel.h"
#include "ui/import/MidiImportDialog.h"

#include <QApplication>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QUrl>

namespace tarvix::testing {
namespace {

std::unique_ptr<QMimeData> FilesData(const QStringList& paths)
{
    auto data = std::make_unique<QMimeData>();
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls << QUrl::fromLocalFile(path);
    data->setUrls(urls);
    return data;
}

// Drags the files over target and drops them at position; true when the
// target took the drag.
bool DropFiles(QWidget* target, QPoint position, const QStringList& paths)
{
    const std::unique_ptr<QMimeData> data = FilesData(paths);
    QDragEnterEvent enter(position, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent drop(QPointF(position), Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
    return drop.isAccepted();
}

class DragDropTest : public EditorTest {
protected:
    void SetUp() override
    {
        StartOnSample();
        std::vector<std::vector<std::unique_ptr<CMidiEvent>>> tracks(2);
        tracks[0].push_back(Channel(0, 0x90, 0x3C, 0x64));
        tracks[1].push_back(Channel(0, 0x91, 0x40, 0x64));
        CMidiFile file = MakeFile(1, 96, std::move(tracks));
        const Bytes bytes = WriteMidi(file);
        m_midi = TempFile("two voices.mid");
        QFile out(m_midi);
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(reinterpret_cast<const char*>(bytes.data()),
                  static_cast<qsizetype>(bytes.size()));
    }

    QPoint TreeItemCenter(Node node)
    {
        CTreePane& tree = Frame().Tree();
        tree.expandAll();
        const QModelIndex parent = tree.model()->index(node.kind == NodeKind::Part ? 0 : 1, 0);
        const QModelIndex item = tree.model()->index(node.index, 0, parent);
        tree.scrollTo(item);
        return tree.visualRect(item).center();
    }

    QPoint ListRowCenter(int row)
    {
        CListPane& list = Frame().List();
        return list.visualRect(list.model()->index(row, 1)).center();
    }

    // Answers the import dialog: it must open on the dropped file without
    // asking for one; returns what rows 0 and 1 fill.
    void ExpectImportOf(QStringList& assigned, bool ok)
    {
        CFileDialog::ResetScript();
        CFileDialog::SetUnattended(true);
        AnswerNextDialog([&assigned, ok](QDialog& dialog) {
            auto* import = qobject_cast<CMidiImportDialog*>(&dialog);
            EXPECT_NE(import, nullptr);
            if (import == nullptr)
                return int(QDialog::Rejected);
            EXPECT_TRUE(import->HasFile());
            EXPECT_EQ(CFileDialog::LastRequest().filter, QString()); // nothing asked
            for (int row = 0; row < import->Tracks().rowCount(); ++row)
                assigned << import->Tracks().index(row, 2).data().toString();
            return ok ? ClickOk(dialog) : int(QDialog::Rejected);
        });
    }

    QString m_midi;
};

TEST_F(DragDropTest, ASyxFileOpensAfterTheQuestionAndJoinsTheRecentFiles)
{
    CMmt8Memory other;
    other.SetPartName(44, "Dropped");
    other.SetPartBeats(44, 2);
    const QString syx = WriteSyx("dropped.syx", other);
    Memory().modified = 1;

    CMessageBox::SetNextAnswer(QMessageBox::Cancel);
    EXPECT_TRUE(DropFiles(&Frame(), {10, 10}, {syx}));
    ProcessEvents();
    EXPECT_EQ(Memory().Part(3).name, "Bass line");

    // Dropped together with a MIDI file, the .syx file wins.
    CMessageBox::SetNextAnswer(QMessageBox::No);
    EXPECT_TRUE(DropFiles(Frame().List().viewport(), ListRowCenter(0), {m_midi, syx}));
    ProcessEvents();
    EXPECT_EQ(Memory().Part(44).name, "Dropped");
    EXPECT_EQ(Memory().Part(3).name, "");
    EXPECT_EQ(Memory().modified, 0);
    EXPECT_EQ(Frame().CurrentPath(), syx);
    EXPECT_EQ(Frame().RecentFiles().EntryFor(kCmdRecentFirst), syx);
}

TEST_F(DragDropTest, ASyxFileThatFailsToLoadLeavesTheDocument)
{
    const QString bad = TempFile("bad.syx");
    QFile file(bad);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not a dump");
    file.close();
    EXPECT_TRUE(DropFiles(&Frame(), {10, 10}, {bad}));
    ProcessEvents();
    EXPECT_EQ(CMessageBox::LastText(), QStringLiteral("Invalid sysex file: ") + bad);
    EXPECT_EQ(Memory().Part(3).name, "Bass line");
    EXPECT_EQ(Frame().windowTitle(), QStringLiteral("Tarvix"));
}

TEST_F(DragDropTest, AMidiFileDroppedOnATreeItemImportsIntoIt)
{
    QStringList assigned;
    ExpectImportOf(assigned, true);
    EXPECT_TRUE(
        DropFiles(Frame().Tree().viewport(), TreeItemCenter({NodeKind::Part, 20}), {m_midi}));
    ProcessEvents();
    EXPECT_EQ(Frame().CurrentNode(), (Node{NodeKind::Part, 20}));
    EXPECT_EQ(assigned, (QStringList{QStringLiteral("Track 1"), QStringLiteral("Track 2")}));
    EXPECT_EQ(Memory().Part(20).name, "two voices.mid");
    EXPECT_EQ(Memory().Part(20).tracks[1].events.size(), 1u);
    EXPECT_EQ(Memory().modified, 1);
    // The dropped file's import is one step, as the menu's is.
    Frame().UpdateUserInterface();
    EXPECT_EQ(FindAction("editUndo")->text(), QStringLiteral("&Undo Import\tCtrl+Z"));
    TriggerAction("editUndo");
    EXPECT_TRUE(Memory().Part(20).IsEmpty());
}

TEST_F(DragDropTest, AMidiFileDroppedOnTheListGoesToTheSelectionOrTheRowUnderIt)
{
    // On a selected row the selection stays: track rows 3 and 6.
    SelectInList({NodeKind::Part, 3}, {2, 5});
    QStringList assigned;
    ExpectImportOf(assigned, false);
    EXPECT_TRUE(DropFiles(Frame().List().viewport(), ListRowCenter(5), {m_midi}));
    ProcessEvents();
    EXPECT_EQ(assigned, (QStringList{QStringLiteral("Track 3"), QStringLiteral("Track 6")}));

    // On another row that row alone is chosen.
    assigned.clear();
    ExpectImportOf(assigned, false);
    EXPECT_TRUE(DropFiles(Frame().List().viewport(), ListRowCenter(7), {m_midi}));
    ProcessEvents();
    EXPECT_EQ(Frame().List().SelectedRows(), std::vector<int>{7});
    EXPECT_EQ(assigned, (QStringList{QStringLiteral("Track 8"), QString()}));
    EXPECT_EQ(Memory().modified, 0);
}

TEST_F(DragDropTest, OtherFilesAreNotTaken)
{
    const QString text = TempFile("notes.txt");
    EXPECT_FALSE(DropFiles(&Frame(), {10, 10}, {text}));
    EXPECT_EQ(CFileDropHandler::DroppedFile(FilesData({text, TempFile("song.MID")}).get()),
              TempFile("song.MID"));
    QMimeData plain;
    plain.setText(QStringLiteral("dropped.syx"));
    EXPECT_EQ(CFileDropHandler::DroppedFile(&plain), QString());
}

} // namespace
} // namespace tarvix::testing
