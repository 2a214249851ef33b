// Undo and redo through the window: every kind of change goes back and
// comes again with the views redrawn, the Edit menu names the step, and the
// title's mark follows the file rather than the last command.
#include "EditorTestBase.h"

#include "framework/FileDialog.h"
#include "framework/MessageBox.h"
#include "framework/UpDownEdit.h"
#include "support/SeededDocuments.h"
#include "ui/ListModel.h"
#include "ui/ListPane.h"
#include "ui/NavigationModel.h"
#include "ui/TreePane.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QGuiApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QToolBar>

#include <functional>
#include <string>
#include <vector>

namespace tarvix::testing {
namespace {

using Bytes = std::vector<std::uint8_t>;

class UndoTest : public EditorTest {
protected:
    void SetUp() override { StartOnSample(); }

    QString ActionText(const char* name)
    {
        Frame().UpdateUserInterface();
        return FindAction(name)->text();
    }

    // Runs a command that must change the document, then takes it back and
    // does it again through the Edit menu, which names it both ways.
    void ExpectUndoRedo(const QString& step, const std::function<void()>& command)
    {
        SCOPED_TRACE(step.toStdString());
        const Bytes before = DumpOf(Memory());
        command();
        ProcessEvents();
        const Bytes after = DumpOf(Memory());
        ASSERT_NE(after, before);
        EXPECT_EQ(ActionText("editUndo"), QStringLiteral("&Undo %1\tCtrl+Z").arg(step));
        TriggerAction("editUndo");
        EXPECT_EQ(DumpOf(Memory()), before);
        EXPECT_EQ(ActionText("editRedo"), QStringLiteral("&Redo %1\tCtrl+Y").arg(step));
        TriggerAction("editRedo");
        EXPECT_EQ(DumpOf(Memory()), after);
    }

    QString TreeLabel(Node node)
    {
        CNavigationModel& model = Frame().Tree().Model();
        return model.data(model.IndexOf(node)).toString();
    }

    QString Cell(int row, int column)
    {
        return Frame().List().model()->index(row, column).data().toString();
    }
};

TEST_F(UndoTest, RenameAndTreeDeletesComeBackWithTheTree)
{
    EXPECT_FALSE(IsEnabled("editUndo"));
    EXPECT_FALSE(IsEnabled("editRedo"));
    EXPECT_EQ(ActionText("editUndo"), QStringLiteral("&Undo\tCtrl+Z"));

    // What the tree's label editor does when the edit ends.
    ExpectUndoRedo(QStringLiteral("Rename"), [this] {
        CNavigationModel& model = Frame().Tree().Model();
        model.setData(model.IndexOf({NodeKind::Part, 3}), QStringLiteral("Lead"));
    });
    TriggerAction("editUndo");
    EXPECT_EQ(TreeLabel({NodeKind::Part, 3}), QStringLiteral("03  Bass line"));
    TriggerAction("editRedo");

    ExpectUndoRedo(QStringLiteral("Delete"), [this] {
        Frame().Tree().SelectNode({NodeKind::AllParts, 0});
        CMessageBox::SetNextAnswer(QMessageBox::Yes);
        TriggerAction("editDelete");
    });
    ExpectUndoRedo(QStringLiteral("Delete"), [this] {
        Frame().Tree().SelectNode({NodeKind::Song, 7});
        TriggerAction("editDelete");
    });
    // Both deletes taken back: everything is there again, drawn.
    TriggerAction("editUndo");
    TriggerAction("editUndo");
    EXPECT_EQ(Memory().Part(3).name, "Lead");
    EXPECT_EQ(Memory().Song(7).steps.size(), 3u);
    EXPECT_EQ(TreeLabel({NodeKind::Song, 7}), QStringLiteral("07  Verse"));
}

TEST_F(UndoTest, DeletingAllPartsOrSongsDefaultsToNo)
{
    for (Node node : {Node{NodeKind::AllParts, 0}, Node{NodeKind::AllSongs, 0}}) {
        Frame().Tree().SelectNode(node);
        CMessageBox::SetNextAnswer(QMessageBox::No);
        TriggerAction("editDelete");
        EXPECT_EQ(CMessageBox::LastDefaultButton(), QMessageBox::No);
    }
    EXPECT_FALSE(IsEnabled("editUndo"));
}

TEST_F(UndoTest, StepListCommandsComeBackWithTheirRows)
{
    ExpectUndoRedo(QStringLiteral("Insert Step"), [this] {
        SelectInList({NodeKind::Song, 7}, {1});
        TriggerAction("editInsertStep");
    });
    TriggerAction("editUndo");
    EXPECT_EQ(Frame().List().Model().rowCount(), 3);
    TriggerAction("editRedo");
    EXPECT_EQ(Frame().List().Model().rowCount(), 4);

    ExpectUndoRedo(QStringLiteral("Delete"), [this] {
        SelectInList({NodeKind::Song, 7}, {0});
        TriggerAction("editDelete");
    });
    ExpectUndoRedo(QStringLiteral("Increment"), [this] {
        SelectInList({NodeKind::Song, 7}, {0});
        TriggerAction("editIncrement");
    });
    ExpectUndoRedo(QStringLiteral("Decrement"), [this] {
        SelectInList({NodeKind::Song, 7}, {0});
        TriggerAction("editDecrement");
    });
    ExpectUndoRedo(QStringLiteral("Delete"), [this] {
        SelectInList({NodeKind::Part, 3}, {1});
        TriggerAction("editDelete");
    });
}

TEST_F(UndoTest, DialogCommandsComeBack)
{
    ExpectUndoRedo(QStringLiteral("Beat Count"), [this] {
        SelectInList({NodeKind::AllParts, 0}, {3});
        AnswerNextDialog([](QDialog& dialog) {
            dialog.findChild<CUpDownEdit*>()->SetText(QStringLiteral("1"));
            return ClickOk(dialog);
        });
        TriggerAction("editPartBeats");
    });
    // The cut events are back with the beats.
    TriggerAction("editUndo");
    EXPECT_EQ(Memory().Part(3).tracks[1].events.size(), 2u);
    TriggerAction("editRedo");

    ExpectUndoRedo(QStringLiteral("Channel"), [this] {
        SelectInList({NodeKind::Part, 3}, {1});
        AnswerNextDialog([](QDialog& dialog) {
            dialog.findChild<QComboBox*>()->setCurrentIndex(9);
            return ClickOk(dialog);
        });
        TriggerAction("editTrackChannel");
    });
    ExpectUndoRedo(QStringLiteral("Tempo"), [this] {
        SelectInList({NodeKind::AllSongs, 0}, {7});
        AnswerNextDialog([](QDialog& dialog) {
            dialog.findChild<CUpDownEdit*>()->SetText(QStringLiteral("200"));
            return ClickOk(dialog);
        });
        TriggerAction("editSongTempo");
    });
    TriggerAction("editUndo");
    EXPECT_EQ(Cell(7, 2), QStringLiteral("96"));
    TriggerAction("editRedo");

    ExpectUndoRedo(QStringLiteral("Step Properties"), [this] {
        SelectInList({NodeKind::Song, 7}, {1});
        AnswerNextDialog([](QDialog& dialog) {
            dialog.findChild<QCheckBox*>(QStringLiteral("track2"))->click();
            return ClickOk(dialog);
        });
        Frame().List().ActivateRow(1, -1);
    });

    // A cancelled dialog is no step.
    SelectInList({NodeKind::AllSongs, 0}, {7});
    AnswerNextDialog([](QDialog&) { return int(QDialog::Rejected); });
    TriggerAction("editSongTempo");
    EXPECT_EQ(ActionText("editUndo"), QStringLiteral("&Undo Step Properties\tCtrl+Z"));
}

TEST_F(UndoTest, AssignIsUndoneWithoutEverMarkingTheDocument)
{
    ExpectUndoRedo(QStringLiteral("Assign"), [this] {
        SelectInList({NodeKind::AllParts, 0}, {3, 5});
        AnswerNextDialog([](QDialog& dialog) {
            dialog.findChild<QListWidget*>()->setCurrentRow(7);
            return ClickOk(dialog);
        });
        TriggerAction("editAssign");
    });
    EXPECT_EQ(Memory().modified, 0);
    TriggerAction("editUndo");
    EXPECT_EQ(Memory().Song(7).steps.size(), 3u);
    EXPECT_EQ(Memory().modified, 0);
    EXPECT_EQ(Frame().windowTitle(), QStringLiteral("Tarvix"));
}

TEST_F(UndoTest, PasteAndInitComeBack)
{
    QGuiApplication::clipboard()->clear();
    SelectInList({NodeKind::AllParts, 0}, {3});
    TriggerAction("editCopy");
    ExpectUndoRedo(QStringLiteral("Paste"), [this] {
        SelectInList({NodeKind::AllParts, 0}, {20});
        TriggerAction("editPaste");
    });
    EXPECT_EQ(Memory().Part(20).name, "Bass line");

    // Init leaves no modified mark, but taking it back brings a document
    // no file holds.
    Frame().Tree().SelectNode({NodeKind::AllParts, 0});
    ExpectUndoRedo(QStringLiteral("Init"), [this] {
        CMessageBox::SetNextAnswer(QMessageBox::No);
        TriggerAction("fileInit");
    });
    EXPECT_EQ(Memory().modified, 0);
    TriggerAction("editUndo");
    EXPECT_EQ(Memory().Part(20).name, "Bass line");
    EXPECT_EQ(Frame().windowTitle(), QStringLiteral("Tarvix *"));
}

TEST_F(UndoTest, TheModifiedMarkFollowsTheSavedFileAndOpenForgets)
{
    const QString path = WriteSyx("song.syx", Memory());
    CFileDialog::SetNextFileName(path);
    TriggerAction("fileOpen");
    const QString clean = QStringLiteral("Tarvix - ") + path;
    const QString marked = clean + QStringLiteral(" *");
    EXPECT_FALSE(IsEnabled("editUndo"));

    SelectInList({NodeKind::Song, 7}, {0});
    TriggerAction("editIncrement");
    TriggerAction("editIncrement");
    EXPECT_EQ(Frame().windowTitle(), marked);
    TriggerAction("editUndo");
    EXPECT_EQ(Frame().windowTitle(), marked);
    TriggerAction("editUndo");
    EXPECT_EQ(Frame().windowTitle(), clean);
    EXPECT_EQ(Memory().modified, 0);
    TriggerAction("editRedo");
    EXPECT_EQ(Frame().windowTitle(), marked);

    // Saved in the middle: the saved point is the clean one, both ways.
    TriggerAction("fileSave");
    EXPECT_EQ(Frame().windowTitle(), clean);
    TriggerAction("editUndo");
    EXPECT_EQ(Frame().windowTitle(), marked);
    TriggerAction("editRedo");
    EXPECT_EQ(Frame().windowTitle(), clean);
    TriggerAction("editRedo");
    EXPECT_EQ(Frame().windowTitle(), marked);

    // A new change where a redo was waiting loses the way back to the file.
    TriggerAction("editUndo");
    TriggerAction("editUndo");
    SelectInList({NodeKind::Song, 7}, {1});
    TriggerAction("editDecrement");
    EXPECT_FALSE(IsEnabled("editRedo"));
    TriggerAction("editUndo");
    EXPECT_EQ(Frame().windowTitle(), marked);

    // Opening forgets the history.
    CMessageBox::SetNextAnswer(QMessageBox::No);
    CFileDialog::SetNextFileName(path);
    TriggerAction("fileOpen");
    EXPECT_EQ(Frame().windowTitle(), clean);
    EXPECT_FALSE(IsEnabled("editUndo"));
    EXPECT_FALSE(IsEnabled("editRedo"));
}

TEST_F(UndoTest, KeysAndToolbarReachUndoAndRedo)
{
    EXPECT_EQ(FindAction("editUndo")->shortcuts(),
              (QList<QKeySequence>{QKeySequence(Qt::CTRL | Qt::Key_Z),
                                   QKeySequence(Qt::ALT | Qt::Key_Backspace)}));
    EXPECT_EQ(FindAction("editRedo")->shortcuts(),
              (QList<QKeySequence>{QKeySequence(Qt::CTRL | Qt::Key_Y),
                                   QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)}));
    EXPECT_TRUE(Frame().ToolBar().actions().contains(FindAction("editUndo")));
    EXPECT_TRUE(Frame().ToolBar().actions().contains(FindAction("editRedo")));
    EXPECT_FALSE(FindAction("editUndo")->icon().isNull());
    EXPECT_FALSE(FindAction("editRedo")->icon().isNull());

    SelectInList({NodeKind::Song, 7}, {0});
    TriggerAction("editInsertStep");
    EXPECT_EQ(FindAction("editUndo")->toolTip(), QStringLiteral("Undo Insert Step"));
}

TEST_F(UndoTest, TheKeysUndoTypingWhileANameIsEditedAndTheDocumentOtherwise)
{
    CTreePane& tree = Frame().Tree();
    CNavigationModel& model = tree.Model();
    model.setData(model.IndexOf({NodeKind::Part, 3}), QStringLiteral("Lead"));
    tree.SelectNode({NodeKind::Part, 5});
    Frame().SwitchPane(Pane::Tree);
    Frame().activateWindow();
    tree.edit(tree.currentIndex());
    ProcessEvents();
    auto* editor = qobject_cast<QLineEdit*>(tree.indexWidget(tree.currentIndex()));
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, QStringLiteral("Hook"));
    QTest::keyClick(editor, Qt::Key_Z, Qt::ControlModifier);
    ProcessEvents();
    EXPECT_EQ(editor->text(), QString());
    EXPECT_EQ(Memory().Part(3).name, "Lead");

    QTest::keyClick(editor, Qt::Key_Escape);
    ProcessEvents();
    ASSERT_FALSE(tree.IsEditingLabel());
    QTest::keyClick(&tree, Qt::Key_Z, Qt::ControlModifier);
    ProcessEvents();
    EXPECT_EQ(Memory().Part(3).name, "Bass line");
    QTest::keyClick(&tree, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    ProcessEvents();
    EXPECT_EQ(Memory().Part(3).name, "Lead");
}

TEST_F(UndoTest, AHundredStepsGoBackOneByOne)
{
    SelectInList({NodeKind::Song, 7}, {0});
    const Bytes start = DumpOf(Memory());
    for (int i = 0; i < 150; ++i)
        TriggerAction("editInsertStep");
    EXPECT_EQ(Memory().Song(7).steps.size(), 153u);
    for (int i = 0; i < 150; ++i)
        TriggerAction("editUndo");
    EXPECT_FALSE(IsEnabled("editUndo"));
    EXPECT_EQ(DumpOf(Memory()), start);
    EXPECT_EQ(Frame().List().Model().rowCount(), 3);
}

} // namespace
} // namespace tarvix::testing
