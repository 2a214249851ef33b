#include "UiTestBase.h"

#include "ui/ListModel.h"
#include "ui/ListPane.h"
#include "ui/NavigationModel.h"
#include "ui/TreePane.h"
#include "ui/undo/DocumentHistory.h"

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

namespace tarvix::testing {
namespace {

TEST(NavigationModelTest, FixedTreeDrawsLabelsFromTheDocument)
{
    CMmt8Memory memory;
    FillSampleDocument(memory);
    CDocumentHistory history(memory);
    CNavigationModel model(memory, history);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);

    ASSERT_EQ(model.rowCount(), 2);
    const QModelIndex parts = model.index(0, 0);
    const QModelIndex songs = model.index(1, 0);
    EXPECT_EQ(model.data(parts).toString(), QStringLiteral("Parts"));
    EXPECT_EQ(model.data(songs).toString(), QStringLiteral("Songs"));
    EXPECT_EQ(model.rowCount(parts), 100);
    EXPECT_EQ(model.rowCount(songs), 100);
    EXPECT_EQ(model.data(model.index(3, 0, parts)).toString(), QStringLiteral("03  Bass line"));
    EXPECT_EQ(model.data(model.index(0, 0, parts)).toString(), QStringLiteral("00  "));
    EXPECT_EQ(model.data(model.index(7, 0, songs)).toString(), QStringLiteral("07  Verse"));
    EXPECT_EQ(model.data(model.index(99, 0, songs)).toString().left(4), QStringLiteral("99  "));
    EXPECT_EQ(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Alesis MMT8"));

    EXPECT_EQ(CNavigationModel::NodeAt(model.index(3, 0, parts)), (Node{NodeKind::Part, 3}));
    EXPECT_EQ(CNavigationModel::NodeAt(songs), (Node{NodeKind::AllSongs, 0}));
    EXPECT_EQ(ToNodeValue({NodeKind::Song, 7}), 0x00070004u);
    EXPECT_EQ(model.IndexOf({NodeKind::Song, 7}), model.index(7, 0, songs));
    EXPECT_FALSE(model.IndexOf({NodeKind::Part, 100}).isValid());

    // Drawn on demand: a change shows without any copy to update.
    memory.SetPartName(3, "Lead");
    EXPECT_EQ(model.data(model.index(3, 0, parts)).toString(), QStringLiteral("03  Lead"));
    // Device names are bytes; a control character cannot break the label.
    memory.Part(4).name = std::string("A\nB\xE9");
    EXPECT_EQ(model.data(model.index(4, 0, parts)).toString(), QStringLiteral("04  A?B\u00E9"));
}

TEST(NavigationModelTest, OnlyOnePartOrOneSongIsRenamed)
{
    CMmt8Memory memory;
    CDocumentHistory history(memory);
    CNavigationModel model(memory, history);
    const QModelIndex parts = model.index(0, 0);
    EXPECT_FALSE(model.flags(parts) & Qt::ItemIsEditable);
    EXPECT_FALSE(model.flags(model.index(1, 0)) & Qt::ItemIsEditable);
    EXPECT_FALSE(model.setData(parts, QStringLiteral("All")));
    EXPECT_EQ(memory.modified, 0);

    const QModelIndex song = model.index(5, 0, model.index(1, 0));
    EXPECT_TRUE(model.flags(song) & Qt::ItemIsEditable);
    EXPECT_TRUE(model.setData(song, QStringLiteral("Chorus with a long name  ")));
    EXPECT_EQ(memory.Song(5).name, "Chorus with a");
    EXPECT_EQ(memory.modified, 1);
    EXPECT_EQ(model.data(song, Qt::EditRole).toString(), QStringLiteral("Chorus with a"));
    EXPECT_STREQ(history.UndoName(), "Rename");
}

class TreeViewTest : public UiTest {
protected:
    void SetUp() override
    {
        Start();
        FillSampleDocument(Memory());
        Frame().RefreshViews();
    }

    QLineEdit* Editor()
    {
        return qobject_cast<QLineEdit*>(Frame().Tree().indexWidget(Frame().Tree().currentIndex()));
    }
};

TEST_F(TreeViewTest, RenamingARootIsRefused)
{
    EXPECT_FALSE(IsEnabled("editRename"));
    Frame().Tree().edit(Frame().Tree().currentIndex());
    EXPECT_FALSE(Frame().Tree().IsEditingLabel());
    Frame().Tree().SelectNode({NodeKind::AllSongs, 0});
    EXPECT_FALSE(IsEnabled("editRename"));
}

TEST_F(TreeViewTest, RenamingAPartEditsTheBareNameAndMarksTheDocument)
{
    Frame().Tree().SelectNode({NodeKind::Part, 3});
    TriggerAction("editRename");
    ASSERT_TRUE(Frame().Tree().IsEditingLabel());
    QLineEdit* editor = Editor();
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->text(), QStringLiteral("Bass line"));
    editor->setText(QStringLiteral("Fretless"));
    QTest::keyClick(editor, Qt::Key_Return);
    ProcessEvents();
    EXPECT_FALSE(Frame().Tree().IsEditingLabel());
    EXPECT_EQ(Memory().Part(3).name, "Fretless");
    EXPECT_EQ(Memory().modified, 1);
    EXPECT_TRUE(Frame().windowTitle().endsWith(QStringLiteral(" *")));
    EXPECT_EQ(Frame().Tree().currentIndex().data().toString(), QStringLiteral("03  Fretless"));
}

TEST_F(TreeViewTest, ACancelledRenameChangesNothing)
{
    Frame().Tree().SelectNode({NodeKind::Song, 7});
    TriggerAction("editRename");
    QLineEdit* editor = Editor();
    ASSERT_NE(editor, nullptr);
    editor->setText(QStringLiteral("Bridge"));
    QTest::keyClick(editor, Qt::Key_Escape);
    ProcessEvents();
    EXPECT_EQ(Memory().Song(7).name, "Verse");
    EXPECT_EQ(Memory().modified, 0);
}

TEST_F(TreeViewTest, SelectingANodeSetsTheCurrentNodeAndTheList)
{
    Frame().Tree().SelectNode({NodeKind::Song, 7});
    EXPECT_EQ(Frame().CurrentNode(), (Node{NodeKind::Song, 7}));
    EXPECT_EQ(Frame().List().Model().ShownNode(), (Node{NodeKind::Song, 7}));
    EXPECT_EQ(Frame().List().Model().rowCount(), 3);
    Frame().Tree().clearSelection();
    EXPECT_EQ(Frame().CurrentNode(), Node{});
    EXPECT_EQ(Frame().List().Model().rowCount(), 0);
}

TEST_F(TreeViewTest, TabAndEnterMoveToTheList)
{
    QTest::keyClick(&Frame().Tree(), Qt::Key_Tab);
    EXPECT_EQ(Frame().ActivePane(), Pane::List);
    QTest::keyClick(&Frame().List(), Qt::Key_Tab);
    EXPECT_EQ(Frame().ActivePane(), Pane::Tree);
    QTest::keyClick(&Frame().Tree(), Qt::Key_Return);
    EXPECT_EQ(Frame().ActivePane(), Pane::List);
    EXPECT_EQ(Frame().List().SelectedRows(), std::vector<int>{0});
}

TEST_F(TreeViewTest, ContextMenusFollowTheNodeKind)
{
    struct Case {
        Node node;
        const char* name;
        QStringList texts;
    };
    const std::vector<Case> cases = {
        {{NodeKind::AllParts, 0},
         "P1_AllParts",
         {"&Copy", "&Paste", "&Delete", "I&mport...", "E&xport..."}},
        {{NodeKind::Part, 1},
         "P1_OnePreset",
         {"&Copy", "&Paste", "&Delete", "I&mport...", "E&xport...", "&Rename", "Pian&o roll"}},
        {{NodeKind::AllSongs, 0},
         "P1_AllSongs",
         {"&Copy", "&Paste", "&Delete", "I&mport...", "E&xport..."}},
        {{NodeKind::Song, 2},
         "P1_OneSong",
         {"&Copy", "&Paste", "&Delete", "I&mport...", "E&xport...", "&Rename",
          "Son&g arrangement"}},
    };
    for (const Case& c : cases) {
        Frame().Tree().SelectNode(c.node);
        Frame().SwitchPane(Pane::Tree);
        const std::unique_ptr<QMenu> menu = Frame().BuildContextMenu(Pane::Tree);
        ASSERT_NE(menu, nullptr);
        EXPECT_EQ(menu->objectName(), QString::fromLatin1(c.name));
        EXPECT_EQ(ActionTexts(*menu), c.texts) << c.name;
        // Enabled as the commands are: Rename on a single item, Paste not
        // without records on the clipboard.
        EXPECT_TRUE(menu->actions()[0]->isEnabled());
        EXPECT_FALSE(menu->actions()[1]->isEnabled());
        EXPECT_TRUE(menu->actions().last()->isEnabled());
    }
    Frame().Tree().clearSelection();
    EXPECT_EQ(Frame().BuildContextMenu(Pane::Tree), nullptr);
}

} // namespace
} // namespace tarvix::testing
