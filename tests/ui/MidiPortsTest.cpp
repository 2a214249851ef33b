#include "TransportUiTest.h"

#include "framework/MessageBox.h"
#include "transport/ports/MidiIn.h"
#include "transport/ports/MidiOut.h"
#include "ui/StatusPanes.h"

#include <QStatusBar>

namespace tarvix::testing {
namespace {

class MidiPortsTest : public TransportUiTest {};

TEST_F(MidiPortsTest, PortsNamedInTheSettingsOpenAtStartAndShowInThePanes)
{
    UseDevice();
    StoreNumber("MidiInBufSize", 512);
    StoreNumber("MidiOutBufNumber", 8);
    StartOnLoopback();

    EXPECT_TRUE(Device().IsInputOpen());
    EXPECT_TRUE(Device().IsOutputOpen());
    EXPECT_EQ(Input().GetBufferSize(), 512u);
    EXPECT_EQ(Output().GetBufferCount(), 8u);
    EXPECT_EQ(Frame().StatusPanes().InputText(), QString::fromLatin1(kDeviceName));
    EXPECT_EQ(Frame().StatusPanes().OutputText(), QString::fromLatin1(kDeviceName));
    // The opening texts are gone once the ports are open.
    EXPECT_TRUE(Frame().statusBar()->currentMessage().isEmpty());
    EXPECT_EQ(CMessageBox::ShownCount(), 0);
    EXPECT_TRUE(IsEnabled("fileReceive"));
    EXPECT_TRUE(IsEnabled("fileSend"));
}

TEST_F(MidiPortsTest, APortThatCannotOpenIsReportedAndStartGoesOn)
{
    StoreString("MidiInDevice", "Unplugged");
    StoreString("MidiOutDevice", kDeviceName);
    StartOnLoopback();

    EXPECT_EQ(CMessageBox::ShownCount(), 1);
    EXPECT_EQ(
        CMessageBox::LastText(),
        QStringLiteral("Can't open device \"Unplugged\", error: The MIDI port does not exist."));
    EXPECT_TRUE(Frame().isVisible());
    EXPECT_TRUE(Frame().StatusPanes().InputText().isEmpty());
    EXPECT_EQ(Frame().StatusPanes().OutputText(), QString::fromLatin1(kDeviceName));
    EXPECT_FALSE(IsEnabled("fileReceive"));
    EXPECT_TRUE(IsEnabled("fileSend"));
}

TEST_F(MidiPortsTest, TheWindowClosesThePortsAsItGoes)
{
    UseDevice();
    StartOnLoopback();
    Frame().ShutDown();
    EXPECT_FALSE(Device().IsInputOpen());
    EXPECT_FALSE(Device().IsOutputOpen());
    EXPECT_FALSE(m_app->Ports().IsInputOpen());
    EXPECT_TRUE(m_app->Ports().InputName().isEmpty());
}

} // namespace
} // namespace tarvix::testing
