#include "UiTestBase.h"

#include "ui/StatusPanes.h"

#include <QCoreApplication>
#include <QLabel>
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
    EXPECT_EQ(Frame().StatusPanes().MemoryText().toStdString(),
              GetMemoryText(Memory().GetMemorySize()));
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
        QMouseEvent click(QEvent::MouseButtonDblClick, QPointF(5, 5),
                          pane->mapToGlobal(QPointF(5, 5)), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(pane, &click);
    }
    EXPECT_EQ(m_commands->log, (QStringList{"Options 1 2711", "Options 1 2721"}));
    // Refreshed after the dialog.
    EXPECT_EQ(Frame().StatusPanes().OutputText(), QStringLiteral("USB MIDI Out"));
}

// At the window's first size, with both ports open and the longest text.
TEST_F(StatusBarTest, MemoryTextIsNeverCutAndClosedPortsTakeNoRoom)
{
    Start();
    QStatusBar& bar = *Frame().statusBar();
    EXPECT_FALSE(Frame().StatusPanes().InputPane()->isVisible());
    EXPECT_FALSE(Frame().StatusPanes().OutputPane()->isVisible());

    for (int i = 0; i < 10000; ++i) {
        auto control = std::make_unique<CMmt8ControlEvent>();
        control->time = static_cast<std::uint16_t>(i);
        control->timed = 1;
        Memory().Part(0).tracks[0].events.push_back(std::move(control));
    }
    Memory().SetPartBeats(0, 682);
    ASSERT_GT(Memory().GetMemorySize(), 64256u);
    m_ports->inputName = QStringLiteral("USB MIDI Interface MIDI 1 In");
    m_ports->outputName = QStringLiteral("USB MIDI Interface MIDI 1 Out");
    Frame().UpdateUserInterface();
    ProcessEvents();

    auto* memory = bar.findChild<QLabel*>(QStringLiteral("memoryPaneText"));
    ASSERT_NE(memory, nullptr);
    EXPECT_TRUE(memory->text().startsWith(QStringLiteral("Size ")));
    EXPECT_GE(memory->width(), memory->fontMetrics().horizontalAdvance(memory->text()));
    EXPECT_EQ(Frame().StatusPanes().MemoryPane()->toolTip(), memory->text());
    for (const char* name : {"inputPaneText", "outputPaneText"}) {
        auto* port = bar.findChild<QLabel*>(QString::fromLatin1(name));
        ASSERT_NE(port, nullptr);
        EXPECT_TRUE(port->isVisible()) << name;
        EXPECT_GE(port->width(), port->fontMetrics().horizontalAdvance(port->text())) << name;
    }
}

} // namespace
} // namespace tarvix::testing
