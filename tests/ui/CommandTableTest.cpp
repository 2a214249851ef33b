#include "UiTestBase.h"

#include "ui/CommandTable.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QToolBar>

namespace tarvix::testing {
namespace {

QList<QKeySequence> Keys(std::initializer_list<QKeyCombination> keys)
{
    QList<QKeySequence> sequences;
    for (const QKeyCombination key : keys)
        sequences << QKeySequence(key);
    return sequences;
}

// Every action the user can reach by the menus, their submenus and the toolbar.
void CollectReachable(const QList<QAction*>& actions, QSet<const QAction*>& reached)
{
    for (const QAction* action : actions) {
        reached.insert(action);
        if (action->menu() != nullptr)
            CollectReachable(action->menu()->actions(), reached);
    }
}

class CommandTableTest : public UiTest {
protected:
    void SetUp() override { Start(); }
};

TEST_F(CommandTableTest, ThePromisedKeysTriggerTheirCommands)
{
    const std::pair<const char*, QList<QKeySequence>> promised[] = {
        {"fileInit", Keys({Qt::CTRL | Qt::Key_N})},
        {"fileOpen", Keys({Qt::CTRL | Qt::Key_O})},
        {"fileSave", Keys({Qt::CTRL | Qt::Key_S})},
        {"fileReceive", Keys({Qt::CTRL | Qt::Key_R})},
        {"fileSend", Keys({Qt::CTRL | Qt::Key_E})},
        {"fileImport", Keys({Qt::CTRL | Qt::Key_I})},
        {"fileExport", Keys({Qt::CTRL | Qt::Key_M})},
        {"editCopy", Keys({Qt::CTRL | Qt::Key_C, Qt::CTRL | Qt::Key_Insert})},
        {"editPaste", Keys({Qt::CTRL | Qt::Key_V, Qt::SHIFT | Qt::Key_Insert})},
        {"editSelectAll", Keys({Qt::CTRL | Qt::Key_A})},
        // The plain keys too: X11 matches keypad keys without their mark.
        {"editIncrement", Keys({Qt::KeypadModifier | Qt::Key_Plus, Qt::Key_Plus})},
        {"editDecrement", Keys({Qt::KeypadModifier | Qt::Key_Minus, Qt::Key_Minus})},
        {"editInsertStep", Keys({Qt::Key_Insert})},
        {"editDelete", Keys({Qt::Key_Delete})},
        {"editRename", Keys({Qt::Key_F2})},
        {"viewPianoRoll", Keys({Qt::CTRL | Qt::Key_P})},
        {"viewSongArrangement", Keys({Qt::CTRL | Qt::Key_G})},
    };
    for (const auto& [name, keys] : promised) {
        QAction* action = FindAction(name);
        ASSERT_NE(action, nullptr) << name;
        EXPECT_EQ(action->shortcuts(), keys) << name;
    }
    // The program's own spelling of two hints stays as users know it.
    EXPECT_TRUE(FindAction("fileImport")->text().endsWith(QStringLiteral("\tCrtl+I")));
    EXPECT_TRUE(FindAction("fileExport")->text().endsWith(QStringLiteral("\tCrtl+M")));
}

TEST_F(CommandTableTest, EveryCommandIsReachableUnderItsOwnName)
{
    QSet<const QAction*> reached;
    CollectReachable(Frame().menuBar()->actions(), reached);
    CollectReachable(Frame().ToolBar().actions(), reached);
    QSet<QString> names;
    for (const CommandInfo& info : CommandTable()) {
        const QString name = QString::fromLatin1(info.objectName);
        EXPECT_FALSE(names.contains(name)) << info.objectName;
        names.insert(name);
        const QAction* action = FindAction(info.objectName);
        ASSERT_NE(action, nullptr) << info.objectName;
        EXPECT_TRUE(reached.contains(action) || !action->shortcuts().isEmpty()) << info.objectName;
    }
    // The recent files sit at their fixed place in the File menu.
    const auto* file = Frame().menuBar()->findChild<QMenu*>(QStringLiteral("menuFile"));
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->actions().value(11)->text(), QString::fromLatin1(kRecentFilesMenuText));
}

TEST_F(CommandTableTest, KeysBoundToNothingAreTakenAndDoNothing)
{
    QAction* cut = FindAction("editCut");
    QAction* undo = FindAction("editUndo");
    ASSERT_TRUE(cut && undo);
    EXPECT_EQ(cut->shortcuts(), (QList<QKeySequence>{QKeySequence(Qt::SHIFT | Qt::Key_Delete),
                                                     QKeySequence(Qt::CTRL | Qt::Key_X)}));
    EXPECT_EQ(undo->shortcuts(), (QList<QKeySequence>{QKeySequence(Qt::ALT | Qt::Key_Backspace),
                                                      QKeySequence(Qt::CTRL | Qt::Key_Z)}));
    Memory().modified = 1;
    TriggerAction("editCut");
    TriggerAction("editUndo");
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
