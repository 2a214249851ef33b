#include "UiTestBase.h"

#include "ui/StatusPanes.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QStatusBar>

namespace tarvix::testing {
namespace {

TEST(StatusPanesTest, MemoryTextAndTheOverCapacityIcon)
{
    QStatusBar bar;
    CStatusPanes panes(bar);
    panes.ShowMemory(0);
    EXPECT_EQ(panes.MemoryText(), QStringLiteral("Memory available: 100%"));
    EXPECT_FALSE(panes.IsWarningShown());
    panes.ShowMemory(64256);
    EXPECT_EQ(panes.MemoryText(), QStringLiteral("Memory available: 0%"));
    EXPECT_FALSE(panes.IsWarningShown());
    panes.ShowMemory(64257);
    EXPECT_EQ(panes.MemoryText(),
              QStringLiteral("Size 64257 bytes, exceeds Alesis MMT8 memory capacity by 1 bytes"));
    EXPECT_TRUE(panes.IsWarningShown());
    panes.ShowMemory(32000);
    EXPECT_FALSE(panes.IsWarningShown());
}

class StatusBarTest : public UiTest {};

TEST_F(StatusBarTest, EmptyDocumentHasAllItsMemory)
{
    Start();
    EXPECT_EQ(Frame().StatusPanes().MemoryText(), QStringLiteral("Memory available: 100%"));
    EXPECT_TRUE(Frame().StatusPanes().InputText().isEmpty());
    EXPECT_TRUE(Frame().StatusPanes().OutputText().isEmpty());
}

TEST_F(StatusBarTest, AnEditShowsInTheMemoryText)
{
    Start();
    FillSampleDocument(Memory());
    Memory().modified = 1;
    Frame().UpdateUserInterface();
    EXPECT_EQ(Frame().StatusPanes().MemoryText().toStdString(), GetMemoryText(Memory().GetMemorySize()));
    EXPECT_NE(Frame().StatusPanes().MemoryText(), QStringLiteral("Memory available: 100%"));
}

TEST_F(StatusBarTest, PortPanesNameTheOpenPortsAndOpenTheirOptions)
{
    m_portSetup.inputName = QStringLiteral("USB MIDI In");
    Start();
    EXPECT_EQ(Frame().StatusPanes().InputText(), QStringLiteral("USB MIDI In"));
    EXPECT_TRUE(Frame().StatusPanes().OutputText().isEmpty());

    m_ports->outputName = QStringLiteral("USB MIDI Out");
    for (QWidget* pane : {Frame().StatusPanes().InputPane(), Frame().StatusPanes().OutputPane()}) {
        QMouseEvent click(QEvent::MouseButtonDblClick, QPointF(5, 5), pane->mapToGlobal(QPointF(5, 5)),
                          Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(pane, &click);
    }
    EXPECT_EQ(m_commands->log, (QStringList{"Options 1 2711", "Options 1 2721"}));
    // Refreshed after the dialog.
    EXPECT_EQ(Frame().StatusPanes().OutputText(), QStringLiteral("USB MIDI Out"));
}

} // namespace
} // namespace tarvix::testing
