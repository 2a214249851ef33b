#include "UiTestBase.h"

#include "ui/CommandTable.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

namespace tarvix::testing {
namespace {

struct Expected {
    const char* name;
    const char* text;
    QList<QKeySequence> keys;
    const char* prompt;
    const char* tooltip;
};

class CommandTableTest : public UiTest {
protected:
    void SetUp() override { Start(); }

    QStringList MenuTexts(const char* menuName)
    {
        auto* menu = Frame().menuBar()->findChild<QMenu*>(QString::fromLatin1(menuName));
        EXPECT_NE(menu, nullptr) << menuName;
        QStringList texts;
        if (menu)
            for (QAction* action : menu->actions())
                texts << (action->isSeparator() ? QStringLiteral("-") : action->text());
        return texts;
    }
};

TEST_F(CommandTableTest, EveryCommandHasItsTextKeysPromptAndTooltip)
{
    const QKeySequence none;
    const std::vector<Expected> expected = {
        {"fileInit", "&Init\tCtrl+N", {QKeySequence(Qt::CTRL | Qt::Key_N)}, "Initialize all parts and songs", "Init"},
        {"fileOpen", "&Open...\tCtrl+O", {QKeySequence(Qt::CTRL | Qt::Key_O)}, "Open existing SysEx file", "Open"},
        {"fileSave", "&Save\tCtrl+S", {QKeySequence(Qt::CTRL | Qt::Key_S)}, "Save all parts and songs in SysEx file", "Save"},
        {"fileSaveAs", "Save &As...", {}, "Save all parts and songs in SysEx file with a new name", "Save As"},
        {"fileReceive", "&Receive\tCtrl+R", {QKeySequence(Qt::CTRL | Qt::Key_R)}, "Receive all parts and songs from Alesis MMT8", "Receive"},
        {"fileSend", "S&end\tCtrl+E", {QKeySequence(Qt::CTRL | Qt::Key_E)}, "Send all parts and songs to Alesis MMT8", "Send"},
        {"fileImport", "I&mport...\tCrtl+I", {QKeySequence(Qt::CTRL | Qt::Key_I)}, "Import selected parts or songs from Standard MIDI File", "Import"},
        {"fileExport", "E&xport...\tCrtl+M", {QKeySequence(Qt::CTRL | Qt::Key_M)}, "Export selected parts or songs into Standard MIDI File", "Export"},
        {"fileExit", "E&xit", {}, "Terminate application", "Exit"},
        {"editUndo", "&Undo\tCtrl+Z", {QKeySequence(Qt::CTRL | Qt::Key_Z), QKeySequence(Qt::ALT | Qt::Key_Backspace)}, "Undo the last change", "Undo"},
        {"editRedo", "&Redo\tCtrl+Y", {QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)}, "Redo the change last undone", "Redo"},
        {"editCopy", "&Copy\tCtrl+C", {QKeySequence(Qt::CTRL | Qt::Key_C), QKeySequence(Qt::CTRL | Qt::Key_Insert)}, "Copy the selection and put it on the clipboard", "Copy"},
        {"editPaste", "&Paste\tCtrl+V", {QKeySequence(Qt::CTRL | Qt::Key_V), QKeySequence(Qt::SHIFT | Qt::Key_Insert)}, "Insert clipboard contents at the current selection", "Paste"},
        {"editSelectAll", "Select &all\tCtrl+A", {QKeySequence(Qt::CTRL | Qt::Key_A)}, "Select all items in the current view", "Select All"},
        {"editAssign", "A&ssign parts to song...", {}, "Assign selected parts to a song", "Assign"},
        {"editPartBeats", "Set part &beat count...", {}, "Set part beat count", "Beats"},
        {"editTrackChannel", "Set track c&hannel...", {}, "Set track channel number", "Channel"},
        {"editSongTempo", "Set song &tempo...", {}, "Set song tempo", "Tempo"},
        {"editIncrement", "I&ncrement part\tNum +", {QKeySequence(Qt::KeypadModifier | Qt::Key_Plus)}, "Increment current step part number", "Increment"},
        {"editDecrement", "D&ecrement part\tNum -", {QKeySequence(Qt::KeypadModifier | Qt::Key_Minus)}, "Decrement current step part number", "Decrement"},
        {"editInsertStep", "&Insert step\tIns", {QKeySequence(Qt::Key_Insert)}, "Insert steps into current song", "Insert"},
        {"editRename", "&Rename\tF2", {QKeySequence(Qt::Key_F2)}, "Rename selected part or song", "Rename"},
        {"toolsMidiFileDump", "&Midi File Dump...", {}, "Dump Standard MIDI File", "Dump"},
        {"toolsOptions", "&Options...", {}, "Display program options dialog", "Options"},
        {"helpAbout", "&About Tarvix...", {}, "Display program information and version number", "About"},
    };
    for (const Expected& command : expected) {
        QAction* action = FindAction(command.name);
        ASSERT_NE(action, nullptr);
        EXPECT_EQ(action->text(), QString::fromLatin1(command.text)) << command.name;
        EXPECT_EQ(action->shortcuts(), command.keys) << command.name;
        EXPECT_EQ(action->statusTip(), QString::fromLatin1(command.prompt)) << command.name;
        EXPECT_EQ(action->toolTip(), QString::fromLatin1(command.tooltip)) << command.name;
    }
    QAction* remove = FindAction("editDelete");
    ASSERT_NE(remove, nullptr);
    EXPECT_EQ(remove->text(), QStringLiteral("&Delete item\tDel"));
    EXPECT_EQ(remove->shortcuts(), QList<QKeySequence>{QKeySequence(Qt::Key_Delete)});
    EXPECT_EQ(remove->statusTip(), QStringLiteral("Delete selected parts, songs or steps"));
}

TEST_F(CommandTableTest, MenusHoldTheCommandsInOrderWithTheirSeparators)
{
    EXPECT_EQ(MenuTexts("menuFile"),
              (QStringList{"&Init\tCtrl+N", "&Open...\tCtrl+O", "&Save\tCtrl+S", "Save &As...", "-",
                           "&Receive\tCtrl+R", "S&end\tCtrl+E", "-", "I&mport...\tCrtl+I",
                           "E&xport...\tCrtl+M", "-", "Recent &Files", "-", "E&xit"}));
    // The recent files are the twelfth item, separators counted.
    EXPECT_EQ(MenuTexts("menuFile").indexOf(QStringLiteral("Recent &Files")), 11);
    EXPECT_EQ(MenuTexts("menuEdit"),
              (QStringList{"&Undo\tCtrl+Z", "&Redo\tCtrl+Y", "-", "&Copy\tCtrl+C",
                           "&Paste\tCtrl+V", "-", "Select &all\tCtrl+A", "-",
                           "A&ssign parts to song...", "Set part &beat count...",
                           "Set track c&hannel...", "Set song &tempo...", "-",
                           "I&ncrement part\tNum +", "D&ecrement part\tNum -", "-",
                           "&Insert step\tIns", "&Delete item\tDel", "-", "&Rename\tF2"}));
    EXPECT_EQ(MenuTexts("menuTools"), (QStringList{"&Midi File Dump...", "-", "&Options..."}));
    EXPECT_EQ(MenuTexts("menuHelp"), QStringList{"&About Tarvix..."});
    QStringList titles;
    for (QAction* menu : Frame().menuBar()->actions())
        titles << menu->text();
    EXPECT_EQ(titles, (QStringList{"&File", "&Edit", "&Tools", "&Help"}));
}

TEST_F(CommandTableTest, ToolbarHoldsItsButtonsInOrder)
{
    QStringList buttons;
    for (QAction* action : Frame().ToolBar().actions())
        buttons << (action->isSeparator() ? QStringLiteral("-") : action->objectName());
    EXPECT_EQ(buttons, (QStringList{"fileInit", "-", "fileOpen", "fileSave", "-", "fileReceive",
                                    "fileSend", "-", "fileImport", "fileExport", "-", "editCopy",
                                    "editPaste", "-", "editUndo", "editRedo", "-",
                                    "toolsOptions", "helpAbout"}));
    EXPECT_EQ(Frame().ToolBar().toolButtonStyle(), Qt::ToolButtonIconOnly);
}

TEST_F(CommandTableTest, KeysBoundToNothingAreTakenAndDoNothing)
{
    QAction* cut = FindAction("editCut");
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->shortcuts(), (QList<QKeySequence>{QKeySequence(Qt::SHIFT | Qt::Key_Delete),
                                                     QKeySequence(Qt::CTRL | Qt::Key_X)}));
    Memory().modified = 1;
    TriggerAction("editCut");
    EXPECT_TRUE(m_commands->log.isEmpty());
    EXPECT_EQ(FindAction("nextPane")->shortcuts(), QList<QKeySequence>{QKeySequence(Qt::Key_F6)});
    EXPECT_EQ(FindAction("previousPane")->shortcuts(),
              QList<QKeySequence>{QKeySequence(Qt::SHIFT | Qt::Key_F6)});
    Memory().modified = 0;
}

TEST_F(CommandTableTest, CommandIdentifiersKeepTheirNumbers)
{
    EXPECT_EQ(FindCommand(kCmdInit)->objectName, std::string("fileInit"));
    EXPECT_EQ(static_cast<int>(kCmdInit), 57600);
    EXPECT_EQ(static_cast<int>(kCmdRecentFirst), 57616);
    EXPECT_EQ(static_cast<int>(kCmdReceive), 33010);
    EXPECT_EQ(static_cast<int>(kCmdAssign), 33040);
    for (const CommandInfo& info : CommandTable())
        EXPECT_EQ(FindCommand(info.id), &info) << info.objectName;
}

} // namespace
} // namespace tarvix::testing
