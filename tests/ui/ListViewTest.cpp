#include "UiTestBase.h"

#include "model/ListCells.h"
#include "ui/ListModel.h"
#include "ui/ListPane.h"
#include "ui/TreePane.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

namespace tarvix::testing {
namespace {

QStringList Row(const CListModel& model, int row)
{
    QStringList cells;
    for (int column = 0; column < model.columnCount(); ++column)
        cells << model.data(model.index(row, column)).toString();
    return cells;
}

QStringList Headers(const CListModel& model)
{
    QStringList titles;
    for (int column = 0; column < model.columnCount(); ++column)
        titles << model.headerData(column, Qt::Horizontal).toString();
    return titles;
}

// The cells' texts are the model's (ListCellsTest); here each node shows
// its kind's columns and rows, and the Qt model keeps Qt's rules.
TEST(ListModelTest, EachNodeShowsItsKindsColumnsAndCells)
{
    CMmt8Memory memory;
    FillSampleDocument(memory);
    CListModel model(memory);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.columnCount(), 0);

    const std::pair<Node, int> shown[] = {{{NodeKind::AllParts, 0}, 100},
                                          {{NodeKind::Part, 3}, 8},
                                          {{NodeKind::AllSongs, 0}, 100},
                                          {{NodeKind::Song, 7}, 3},
                                          {{NodeKind::Song, 8}, 0}};
    for (const auto& [node, rows] : shown) {
        SCOPED_TRACE(node.index);
        model.ShowNode(node);
        const ListKind kind = *ListKindFor(node.kind);
        const auto columns = GetListColumns(kind);
        ASSERT_EQ(model.columnCount(), static_cast<int>(columns.size()));
        ASSERT_EQ(model.rowCount(), rows);
        for (int column = 0; column < model.columnCount(); ++column) {
            const ListColumn& expected = columns[static_cast<std::size_t>(column)];
            EXPECT_EQ(Headers(model)[column], QString::fromLatin1(expected.title));
            EXPECT_EQ(model.ColumnWidthUnits(column), expected.widthUnits);
            for (int row = 0; row < rows; ++row)
                EXPECT_EQ(Row(model, row)[column].toStdString(),
                          GetListCellText(memory, kind, node.index, row, column));
        }
    }
}

TEST(ListModelTest, SameKindRedrawsButStepListsAreRebuilt)
{
    CMmt8Memory memory;
    FillSampleDocument(memory);
    CListModel model(memory);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy redraws(&model, &QAbstractItemModel::dataChanged);

    EXPECT_TRUE(model.ShowNode({NodeKind::Part, 3}));
    EXPECT_FALSE(model.ShowNode({NodeKind::Part, 7}));
    EXPECT_EQ(resets.count(), 1);
    EXPECT_EQ(redraws.count(), 1);
    EXPECT_EQ(Row(model, 1)[1], QStringLiteral("Unchanged")); // part 7's track now

    EXPECT_TRUE(model.ShowNode({NodeKind::Song, 7}));
    EXPECT_TRUE(model.ShowNode({NodeKind::Song, 7}));
    EXPECT_TRUE(model.ShowNode({NodeKind::Song, 2}));
    EXPECT_EQ(resets.count(), 4);
    EXPECT_TRUE(model.ShowNode({NodeKind::AllSongs, 0}));
    EXPECT_FALSE(model.ShowNode({NodeKind::AllSongs, 0}));
}

class ListViewTest : public UiTest {
protected:
    void SetUp() override
    {
        Start();
        FillSampleDocument(Memory());
        Frame().RefreshViews();
    }

    CListPane& List() { return Frame().List(); }

    void ShowInList(Node node, int row)
    {
        Frame().Tree().SelectNode(node);
        Frame().SwitchPane(Pane::List);
        List().selectRow(row);
        ProcessEvents();
    }
};

TEST_F(ListViewTest, ColumnWidthsAreMultiplesOfFiveXs)
{
    const int unit = List().fontMetrics().horizontalAdvance(QStringLiteral("XXXXX"));
    EXPECT_EQ(List().columnWidth(0), unit);
    EXPECT_EQ(List().columnWidth(1), 5 * unit);
    EXPECT_EQ(List().columnWidth(2), 4 * unit);
    EXPECT_TRUE(List().horizontalHeader()->stretchLastSection());
}

TEST_F(ListViewTest, RebuildKeepsTheFirstSelectedRowWhenItStillExists)
{
    ShowInList({NodeKind::Part, 3}, 5);
    Frame().Tree().SelectNode({NodeKind::AllSongs, 0});
    EXPECT_EQ(List().SelectedRows(), std::vector<int>{5});
    Frame().Tree().SelectNode({NodeKind::Song, 7});
    EXPECT_TRUE(List().SelectedRows().empty()); // a song of three steps
}

TEST_F(ListViewTest, ActivatingAPartOrSongOpensIt)
{
    ShowInList({NodeKind::AllParts, 0}, 3);
    QTest::keyClick(&List(), Qt::Key_Return);
    EXPECT_EQ(Frame().CurrentNode(), (Node{NodeKind::Part, 3}));
    EXPECT_EQ(List().Model().rowCount(), 8);

    ShowInList({NodeKind::AllSongs, 0}, 7);
    QTest::keyClick(&List(), Qt::Key_F2);
    EXPECT_EQ(Frame().CurrentNode(), (Node{NodeKind::Song, 7}));
    EXPECT_EQ(List().Model().rowCount(), 3);
}

TEST_F(ListViewTest, DoubleClickOnAValueColumnSendsItsCommand)
{
    ShowInList({NodeKind::AllParts, 0}, 3);
    List().ActivateRow(3, 2);
    ShowInList({NodeKind::Part, 3}, 1);
    List().ActivateRow(1, 1);
    List().ActivateRow(1, 0);
    ShowInList({NodeKind::AllSongs, 0}, 7);
    List().ActivateRow(7, 2);
    EXPECT_EQ(m_commands->log,
              (QStringList{"33023 list node 1.0 rows 3", "33024 list node 2.3 rows 1",
                           "TrackDump 3 1", "33025 list node 3.0 rows 7"}));
    EXPECT_EQ(Frame().CurrentNode(), (Node{NodeKind::AllSongs, 0}));
}

TEST_F(ListViewTest, ActivatingAStepOpensItsPropertiesAndAConfirmationMarksTheDocument)
{
    ShowInList({NodeKind::Song, 7}, 1);
    QTest::keyClick(&List(), Qt::Key_Enter);
    EXPECT_EQ(Memory().modified, 0);
    m_commands->confirmStepEdit = true;
    List().ActivateRow(2, 3);
    EXPECT_EQ(m_commands->log, (QStringList{"StepProperties 7 1", "StepProperties 7 2"}));
    EXPECT_EQ(Memory().modified, 1);
    ProcessEvents();
    EXPECT_TRUE(Frame().windowTitle().endsWith(QStringLiteral(" *")));
}

TEST_F(ListViewTest, SelectAllSelectsEveryRow)
{
    ShowInList({NodeKind::Part, 3}, 0);
    TriggerAction("editSelectAll");
    EXPECT_EQ(List().SelectedRows(), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));
}

TEST_F(ListViewTest, ContextMenusFollowTheNodeKind)
{
    struct Case {
        Node node;
        const char* name;
        QStringList texts;
    };
    const std::vector<Case> cases = {
        {{NodeKind::AllParts, 0},
         "P2_PartList",
         {"&Copy", "&Paste", "Select &all", "&Delete", "I&mport...", "E&xport...", "A&ssign...",
          "&Beats...", "Pian&o roll"}},
        {{NodeKind::Part, 3},
         "P2_TrackList",
         {"&Copy", "&Paste", "Select &all", "&Delete", "I&mport...", "E&xport...", "C&hannel...",
          "Pian&o roll"}},
        {{NodeKind::AllSongs, 0},
         "P2_SongList",
         {"&Copy", "&Paste", "Select &all", "&Delete", "I&mport...", "E&xport...", "&Tempo...",
          "Son&g arrangement"}},
        {{NodeKind::Song, 7},
         "P2_StepList",
         {"&Copy", "&Paste", "Select &all", "I&ncrement", "D&ecrement", "&Insert", "&Delete",
          "I&mport...", "E&xport...", "Pian&o roll", "Son&g arrangement"}},
    };
    for (const Case& c : cases) {
        ShowInList(c.node, 0);
        const std::unique_ptr<QMenu> menu = Frame().BuildContextMenu(Pane::List);
        ASSERT_NE(menu, nullptr);
        EXPECT_EQ(menu->objectName(), QString::fromLatin1(c.name));
        EXPECT_EQ(ActionTexts(*menu), c.texts) << c.name;
        EXPECT_TRUE(menu->actions().last()->isEnabled()) << c.name;
    }
    // An item runs its command in the list.
    ShowInList({NodeKind::AllParts, 0}, 4);
    const std::unique_ptr<QMenu> menu = Frame().BuildContextMenu(Pane::List);
    const QList<QAction*> items = menu->actions();
    const auto beats = std::find_if(items.begin(), items.end(), [](QAction* action) {
        return action->text() == QStringLiteral("&Beats...");
    });
    ASSERT_NE(beats, items.end());
    (*beats)->trigger();
    EXPECT_EQ(m_commands->log.last(), QStringLiteral("33023 list node 1.0 rows 4"));
}

} // namespace
} // namespace tarvix::testing
