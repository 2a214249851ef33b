#include "UiTestBase.h"

#include "ui/CommandState.h"
#include "ui/ListPane.h"
#include "ui/TreePane.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>

namespace tarvix::testing {
namespace {

TEST(CommandStateTest, KindBoundCommandsNeedTheListTheKindAndASelection)
{
    const CommandInfo& beats = *FindCommand(kCmdPartBeats);
    UiState state{Pane::List, NodeKind::AllParts, true, false, false, false};
    EXPECT_TRUE(IsCommandEnabled(beats, state));
    state.hasSelection = false;
    EXPECT_FALSE(IsCommandEnabled(beats, state));
    state = {Pane::Tree, NodeKind::AllParts, true, false, false, false};
    EXPECT_FALSE(IsCommandEnabled(beats, state));
    state = {Pane::List, NodeKind::AllSongs, true, false, false, false};
    EXPECT_FALSE(IsCommandEnabled(beats, state));
    EXPECT_TRUE(IsCommandEnabled(*FindCommand(kCmdSongTempo), state));

    // Insert step needs no selection.
    state = {Pane::List, NodeKind::Song, false, false, false, false};
    EXPECT_TRUE(IsCommandEnabled(*FindCommand(kCmdInsertStep), state));
    EXPECT_FALSE(IsCommandEnabled(*FindCommand(kCmdIncrement), state));
}

TEST(CommandStateTest, RenameOnlyForOnePartOrOneSongInTheTree)
{
    const CommandInfo& rename = *FindCommand(kCmdRename);
    for (NodeKind kind : {NodeKind::AllParts, NodeKind::AllSongs, NodeKind::None})
        EXPECT_FALSE(IsCommandEnabled(rename, {Pane::Tree, kind, true, false, false, false}));
    for (NodeKind kind : {NodeKind::Part, NodeKind::Song}) {
        EXPECT_TRUE(IsCommandEnabled(rename, {Pane::Tree, kind, true, false, false, false}));
        EXPECT_FALSE(IsCommandEnabled(rename, {Pane::List, kind, true, false, false, false}));
    }
}

class EnablingTest : public UiTest {};

TEST_F(EnablingTest, AtStartTheTreeIsActiveOnTheParts)
{
    Start();
    EXPECT_EQ(Frame().ActivePane(), Pane::Tree);
    EXPECT_EQ(Frame().CurrentNode(), (Node{NodeKind::AllParts, 0}));
    for (const char* name :
         {"fileInit", "fileOpen", "fileSave", "fileSaveAs", "fileExit", "toolsMidiFileDump",
          "toolsOptions", "helpAbout", "editCopy", "editDelete", "fileImport", "fileExport"})
        EXPECT_TRUE(IsEnabled(name)) << name;
    for (const char* name : {"fileReceive", "fileSend", "editPaste", "editSelectAll", "editRename",
                             "editAssign", "editPartBeats", "editInsertStep"})
        EXPECT_FALSE(IsEnabled(name)) << name;
}

TEST_F(EnablingTest, TransfersFollowThePortsThatAreOpen)
{
    m_portSetup.inputName = QStringLiteral("MMT8 In");
    Start();
    EXPECT_EQ(m_ports->opened, 1);
    EXPECT_TRUE(IsEnabled("fileReceive"));
    EXPECT_FALSE(IsEnabled("fileSend"));
    m_ports->outputName = QStringLiteral("MMT8 Out");
    EXPECT_TRUE(IsEnabled("fileSend"));
}

TEST_F(EnablingTest, ListCommandsFollowTheListAndItsKind)
{
    Start();
    Frame().SwitchPane(Pane::List);
    ProcessEvents();
    EXPECT_EQ(Frame().ActivePane(), Pane::List);
    // Arriving from the tree with nothing selected selects the first row.
    EXPECT_EQ(Frame().List().SelectedRows(), std::vector<int>{0});
    for (const char* name :
         {"editSelectAll", "editAssign", "editPartBeats", "editCopy", "editDelete"})
        EXPECT_TRUE(IsEnabled(name)) << name;
    for (const char* name :
         {"editTrackChannel", "editSongTempo", "editIncrement", "editInsertStep", "editRename"})
        EXPECT_FALSE(IsEnabled(name)) << name;

    Frame().Tree().SelectNode({NodeKind::Song, 4});
    Frame().SwitchPane(Pane::List);
    EXPECT_TRUE(IsEnabled("editInsertStep"));
    EXPECT_FALSE(IsEnabled("editIncrement")); // an empty song has no step to select
    EXPECT_FALSE(IsEnabled("editCopy"));
}

TEST_F(EnablingTest, PasteReadsTheRecordsOrPlainTextWhileALabelIsEdited)
{
    Start();
    EXPECT_FALSE(IsEnabled("editPaste"));
    m_commands->clipboardHasRecords = true;
    EXPECT_TRUE(IsEnabled("editPaste"));

    m_commands->clipboardHasRecords = false;
    Frame().Tree().SelectNode({NodeKind::Part, 1});
    TriggerAction("editRename");
    ASSERT_TRUE(Frame().Tree().IsEditingLabel());
    QGuiApplication::clipboard()->setText(QStringLiteral("Lead"));
    EXPECT_TRUE(IsEnabled("editPaste"));
    QGuiApplication::clipboard()->clear();
    EXPECT_FALSE(IsEnabled("editPaste"));
}

TEST_F(EnablingTest, PaneCommandsGoToTheActivePaneWithItsSelection)
{
    Start();
    FillSampleDocument(Memory());
    Frame().Tree().SelectNode({NodeKind::Part, 5});
    TriggerAction("editDelete");
    TriggerAction("editCopy");
    Frame().Tree().SelectNode({NodeKind::AllParts, 0});
    Frame().SwitchPane(Pane::List);
    Frame().List().selectRow(4);
    Frame().List().selectionModel()->select(Frame().List().model()->index(2, 0),
                                            QItemSelectionModel::Select |
                                                QItemSelectionModel::Rows);
    TriggerAction("fileExport");
    TriggerAction("editPartBeats");
    EXPECT_EQ(m_commands->log,
              (QStringList{"33021 tree node 2.5 rows ", "57634 tree node 2.5 rows ",
                           "33013 list node 1.0 rows 2,4", "33023 list node 1.0 rows 2,4"}));
}

TEST_F(EnablingTest, FrameCommandsReachTheirHooks)
{
    m_portSetup.inputName = QStringLiteral("In");
    m_portSetup.outputName = QStringLiteral("Out");
    Start();
    TriggerAction("fileReceive");
    TriggerAction("fileSend");
    TriggerAction("toolsOptions");
    TriggerAction("toolsMidiFileDump");
    EXPECT_EQ(m_commands->log, (QStringList{"Receive", "Send", "Options 0 0", "MidiFileDump"}));
}

TEST_F(EnablingTest, F6MovesBetweenThePanes)
{
    Start();
    TriggerAction("nextPane");
    EXPECT_EQ(Frame().ActivePane(), Pane::List);
    TriggerAction("previousPane");
    EXPECT_EQ(Frame().ActivePane(), Pane::Tree);
}

} // namespace
} // namespace tarvix::testing
