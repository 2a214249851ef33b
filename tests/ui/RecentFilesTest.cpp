#include "UiTestBase.h"

#include "framework/FileDialog.h"
#include "framework/MessageBox.h"
#include "framework/RecentFileList.h"
#include "framework/WindowPlacement.h"
#include "settings/SettingsKey.h"

#include <QAction>
#include <QFile>
#include <QMenu>
#include <QSplitter>

#include <array>

namespace tarvix::testing {
namespace {

const std::string kList = "Recent Document List";

class RecentFilesTest : public UiTest {
protected:
    CSettingsKey Key() const { return CSettingsKey::InFile(SettingsPath().toStdString()); }

    QString Stored(int number)
    {
        std::string value;
        Key().ReadStringValue("Document" + std::to_string(number), value, "<absent>", kList);
        return QString::fromStdString(value);
    }

    void OpenByDialog(const QString& path)
    {
        CFileDialog::SetNextFileName(path);
        TriggerAction("fileOpen");
    }

    QMenu* RecentMenu()
    {
        QAction* submenu = FindAction("fileRecentFiles");
        return submenu ? submenu->menu() : nullptr;
    }
};

TEST_F(RecentFilesTest, EmptyListShowsADisabledPlaceholder)
{
    Start();
    QMenu* menu = RecentMenu();
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().size(), 1);
    EXPECT_EQ(menu->actions()[0]->text(), QStringLiteral("(empty)"));
    EXPECT_FALSE(menu->actions()[0]->isEnabled());
}

TEST_F(RecentFilesTest, FourMostRecentFirstComparedWithoutCase)
{
    CMmt8Memory blank;
    QStringList paths;
    for (const char* name : {"a.syx", "b.syx", "c.syx", "d.syx", "e.syx", "B.SYX"})
        paths << WriteSyx(name, blank);
    Start();
    for (int i = 0; i < 5; ++i)
        OpenByDialog(paths[i]);
    EXPECT_EQ(Frame().RecentFiles().Entries(),
              (QStringList{paths[4], paths[3], paths[2], paths[1]}));
    // Written at once, not only at exit.
    EXPECT_EQ(Stored(1), paths[4]);

    Frame().RecentFiles().Add(paths[1].toUpper());
    EXPECT_EQ(Frame().RecentFiles().Entries(),
              (QStringList{paths[1].toUpper(), paths[4], paths[3], paths[2]}));
    ASSERT_EQ(RecentMenu()->actions().size(), 4);
    EXPECT_EQ(RecentMenu()->actions()[1]->statusTip(), QStringLiteral("Open this document"));
}

TEST_F(RecentFilesTest, ChoosingAnEntryOpensItAndMovesItToTheTop)
{
    CMmt8Memory blank;
    const QString first = WriteSyx("first.syx", blank);
    blank.SetPartName(9, "Second");
    const QString second = WriteSyx("second.syx", blank);
    Start();
    OpenByDialog(first);
    OpenByDialog(second);
    RecentMenu()->actions()[1]->trigger();
    ProcessEvents();
    EXPECT_EQ(Frame().CurrentPath(), first);
    EXPECT_EQ(Frame().CurrentTitle(), QStringLiteral("first.syx"));
    EXPECT_EQ(Memory().Part(9).name, "");
    EXPECT_EQ(Frame().RecentFiles().Entries(), (QStringList{first, second}));
}

TEST_F(RecentFilesTest, AnEntryWhoseFileIsGoneIsRemoved)
{
    CMmt8Memory blank;
    const QString kept = WriteSyx("kept.syx", blank);
    const QString gone = WriteSyx("gone.syx", blank);
    Start();
    OpenByDialog(kept);
    OpenByDialog(gone);
    ASSERT_TRUE(QFile::remove(gone));
    Frame().ExecuteCommand(kCmdRecentFirst);
    EXPECT_TRUE(CMessageBox::LastText().startsWith(QStringLiteral("Can't open file")));
    EXPECT_EQ(Frame().RecentFiles().Entries(), QStringList{kept});
    EXPECT_EQ(Stored(2), QStringLiteral("<absent>"));
}

TEST_F(RecentFilesTest, ListAndWindowStateAreWrittenAtExit)
{
    Key().WriteDwordValue("DocumentCount", 2, kList);
    Key().WriteStringValue("Document1", "/old/one.syx", kList);
    Key().WriteStringValue("Document2", "/old/two.syx", kList);
    Key().WriteStringValue("Document9", "/old/stale.syx", kList);
    Start();
    EXPECT_EQ(Frame().RecentFiles().MaxEntries(), 2);
    EXPECT_EQ(Frame().RecentFiles().Entries(),
              (QStringList{QStringLiteral("/old/one.syx"), QStringLiteral("/old/two.syx")}));
    EXPECT_EQ(Frame().Splitter().sizes().value(0), 240);
    Frame().Splitter().setSizes({300, 400});
    Stop();

    EXPECT_EQ(Stored(1), QStringLiteral("/old/one.syx"));
    EXPECT_EQ(Stored(9), QStringLiteral("<absent>"));
    std::array<std::uint8_t, 4> splitter{};
    ASSERT_EQ(Key().ReadBinaryValue("SplitterPosition", splitter), kSettingsSuccess);
    EXPECT_EQ(splitter, (std::array<std::uint8_t, 4>{44, 1, 0, 0}));
    std::array<std::uint8_t, 20> placement{};
    EXPECT_EQ(Key().ReadBinaryValue("MainFramePlacement", placement), kSettingsSuccess);
    std::uint32_t loadLast = 9;
    Key().ReadDwordValue("LoadLastFileOnStart", loadLast, 9);
    EXPECT_EQ(loadLast, 0u); // the settings were saved too
}

TEST_F(RecentFilesTest, SplitterPositionIsRestored)
{
    const std::array<std::uint8_t, 4> position{200, 0, 0, 0};
    Key().WriteBinaryValue("SplitterPosition", position);
    Start();
    EXPECT_EQ(Frame().Splitter().sizes().value(0), 200);
}

// Five little-endian values: maximized, x, y, width, height.
std::array<std::uint8_t, 20> Placement(int x, int y, int width, int height)
{
    std::array<std::uint8_t, 20> record{};
    const int values[] = {0, x, y, width, height};
    for (std::size_t slot = 0; slot < 5; ++slot)
        for (std::size_t i = 0; i < 4; ++i)
            record[slot * 4 + i] =
                static_cast<std::uint8_t>(static_cast<std::uint32_t>(values[slot]) >> (8 * i));
    return record;
}

TEST_F(RecentFilesTest, PlacementIsRestoredOnlyWithTheWholeTitleBarOnAScreen)
{
    Key().WriteBinaryValue("MainFramePlacement", Placement(60, 80, 500, 400));
    Start();
    EXPECT_EQ(Frame().geometry(), QRect(60, 80, 500, 400));
    Stop();
    // Half of the title bar off the left edge: the size stays, the place
    // is the system's.
    Key().WriteBinaryValue("MainFramePlacement", Placement(-250, 80, 500, 400));
    Start();
    EXPECT_EQ(Frame().size(), QSize(500, 400));
    EXPECT_NE(Frame().pos().x(), -250);
    Stop();
    // The inside on the screen but the title bar above its top.
    Key().WriteBinaryValue("MainFramePlacement", Placement(60, 0, 500, 400));
    Start();
    EXPECT_EQ(Frame().size(), QSize(500, 400));
    EXPECT_FALSE(IsTitleBarOnScreen(Frame(), QRect(60, 0, 500, 400)));
    EXPECT_TRUE(IsTitleBarOnScreen(Frame(), QRect(60, 80, 500, 400)));
}

TEST_F(RecentFilesTest, LastFileOpensAtStartInsteadOfReceive)
{
    CMmt8Memory sample;
    FillSampleDocument(sample);
    const QString path = WriteSyx("last.syx", sample);
    Key().WriteStringValue("Document1", path.toStdString(), kList);
    Key().WriteDwordValue("LoadLastFileOnStart", 1);
    Key().WriteDwordValue("LoadDeviceOnStart", 1);
    m_portSetup.inputName = QStringLiteral("In");
    Start();
    EXPECT_EQ(Frame().CurrentPath(), path);
    EXPECT_EQ(Memory().Part(3).name, "Bass line");
    EXPECT_TRUE(m_commands->log.isEmpty());
}

TEST_F(RecentFilesTest, CommandLineWinsOverTheLastFile)
{
    CMmt8Memory blank;
    const QString last = WriteSyx("last.syx", blank);
    const QString named = WriteSyx("named.syx", blank);
    Key().WriteStringValue("Document1", last.toStdString(), kList);
    Key().WriteDwordValue("LoadLastFileOnStart", 1);
    Start({named});
    EXPECT_EQ(Frame().CurrentPath(), named);
}

TEST_F(RecentFilesTest, ReceiveStartsWhenAskedAndTheInputIsOpen)
{
    Key().WriteDwordValue("LoadDeviceOnStart", 1);
    Start();
    EXPECT_TRUE(m_commands->log.isEmpty()); // the input is closed
    Stop();
    m_portSetup.inputName = QStringLiteral("In");
    Start();
    EXPECT_EQ(m_commands->log, QStringList{QStringLiteral("Receive")});
}

} // namespace
} // namespace tarvix::testing
