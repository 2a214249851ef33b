#include "TransportUiTest.h"

#include "framework/DialogRunner.h"
#include "framework/MessageBox.h"
#include "model/SysexDump.h"
#include "support/Bytes.h"
#include "transport/ports/MidiIn.h"
#include "transport/ports/MidiOut.h"
#include "transport/transfer/SysexTransfer.h"
#include "ui/transfer/MidiProgressDlg.h"
#include "ui/transfer/TransferCommands.h"

#include <QPushButton>
#include <QRegularExpression>

namespace tarvix::testing {
namespace {

const QString kPrompt = QStringLiteral(
    "To start MIDI dump transfer on Alesis MMT8 hold down [TAPE] button, press and release "
    "[PAGE DOWN], then press [RECORD] ...\n");

Bytes UnknownSysex(std::size_t size)
{
    Bytes bytes(size, 0x11);
    bytes.front() = 0xF0;
    bytes[1] = 0x7D;
    bytes.back() = 0xF7;
    return bytes;
}

class TransferCommandsTest : public TransportUiTest {
protected:
    // The next progress dialog is shown for real and handed to the test,
    // which plays the device and the user; its result is the dialog's.
    void AnswerProgress(std::function<void(CMidiProgressDlg&)> act)
    {
        CDialogRunner::SetNextResponder([this, act](QDialog& dialog) {
            auto& progress = dynamic_cast<CMidiProgressDlg&>(dialog);
            ++m_dialogs;
            progress.show();
            act(progress);
            EXPECT_TRUE(WaitUntil([&] { return !progress.isVisible(); }));
            return progress.result();
        });
    }

    // Waits for a text the dialog shows, and returns it.
    static QString WaitForText(const CMidiProgressDlg& dialog, const QString& start)
    {
        EXPECT_TRUE(WaitUntil([&] { return dialog.StatusText().startsWith(start); }))
            << "still showing: " << dialog.StatusText().toStdString();
        return dialog.StatusText();
    }

    int m_dialogs = 0;
};

// The simulated device sends at the cable's speed; the dialog goes through
// its states as a user would see them.
TEST_F(TransferCommandsTest, ReceiveShowsWaitingReceivingAndReceivedThenLoadsTheDump)
{
    const Bytes dump = DumpOf(1);
    CSimulatedMmt8& device = ConnectSimulatedDevice(dump, true);
    UseDevice();
    StartOnLoopback();
    QStringList states;
    int receivingValue = -1;
    int maximum = -1;
    AnswerProgress([&](CMidiProgressDlg& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Midi progress"));
        states << WaitForText(dialog, QStringLiteral("To start"));
        EXPECT_EQ(dialog.ProgressValue(), 0);
        device.RequestSend();
        states << WaitForText(dialog, QStringLiteral("Receiving"));
        receivingValue = dialog.ProgressValue();
        maximum = dialog.ProgressMaximum();
        states << WaitForText(dialog, QStringLiteral("Received"));
    });

    TriggerAction("fileReceive");

    EXPECT_EQ(m_dialogs, 1);
    ASSERT_EQ(states.size(), 3);
    EXPECT_EQ(states[0], kPrompt);
    const QRegularExpressionMatch receiving =
        QRegularExpression(QStringLiteral("^Receiving Alesis MMT8 sysex (\\d+) bytes\n$"))
            .match(states[1]);
    ASSERT_TRUE(receiving.hasMatch()) << states[1].toStdString();
    EXPECT_GT(receiving.captured(1).toInt(), 0);
    EXPECT_LT(receiving.captured(1).toInt(), static_cast<int>(dump.size()));
    EXPECT_EQ(receivingValue, receiving.captured(1).toInt());
    EXPECT_EQ(maximum, 64256);
    EXPECT_EQ(states[2], QStringLiteral("Received Alesis MMT8 sysex %1 bytes\n").arg(dump.size()));

    EXPECT_EQ(DifferenceFrom(1, Memory()), "");
    EXPECT_EQ(Memory().modified, 1);
    EXPECT_TRUE(Frame().windowTitle().endsWith(QStringLiteral(" *")));
    EXPECT_FALSE(Input().IsStarted());
}

TEST_F(TransferCommandsTest, OtherTrafficIsListedAndCountedThenSkippedWhenLoading)
{
    UseDevice();
    StartOnLoopback();
    const Bytes dump = DumpOf(2);
    QString lastThree;
    int counted = -1;
    AnswerProgress([&](CMidiProgressDlg& dialog) {
        Device().Feed(Concat(
            {UnknownSysex(5), UnknownSysex(6), UnknownSysex(7), UnknownSysex(8), UnknownSysex(9)}));
        EXPECT_TRUE(
            WaitUntil([&] { return dialog.StatusText().contains(QStringLiteral("9 bytes")); }));
        lastThree = dialog.StatusText();
        counted = dialog.ProgressValue();
        Device().Feed(dump);
    });

    TriggerAction("fileReceive");

    EXPECT_EQ(lastThree, QStringLiteral("Received unknown sysex 7 bytes\n"
                                        "Received unknown sysex 8 bytes\n"
                                        "Received unknown sysex 9 bytes\n"));
    EXPECT_EQ(counted, 5 + 6 + 7 + 8 + 9);
    EXPECT_EQ(CMessageBox::ShownCount(), 0);
    EXPECT_EQ(DifferenceFrom(2, Memory()), "");
    EXPECT_EQ(Memory().modified, 1);
}

TEST_F(TransferCommandsTest, CancelStopsTheReceiveAndLeavesTheDocument)
{
    UseDevice();
    StartOnLoopback();
    const Bytes dump = DumpOf(3);
    AnswerProgress([&](CMidiProgressDlg& dialog) {
        Device().Feed(dump.data(), dump.size() / 2);
        WaitForText(dialog, QStringLiteral("Receiving"));
        dialog.CancelButton()->click();
    });

    TriggerAction("fileReceive");

    EXPECT_EQ(m_dialogs, 1);
    EXPECT_FALSE(Input().IsStarted());
    EXPECT_EQ(Memory().modified, 0);
    EXPECT_EQ(Memory().GetMemorySize(), CMmt8Memory().GetMemorySize());
    EXPECT_EQ(Frame().windowTitle(), QStringLiteral("Tarvix"));
}

TEST_F(TransferCommandsTest, AReceivedDumpIsOneStepBack)
{
    UseDevice();
    StartOnLoopback();
    MakeDocument(Memory(), 5);
    Frame().RefreshViews();
    const Bytes dump = DumpOf(6);
    AnswerProgress([&](CMidiProgressDlg&) { Device().Feed(dump); });
    TriggerAction("fileReceive");
    EXPECT_EQ(DifferenceFrom(6, Memory()), "");
    TriggerAction("editUndo");
    EXPECT_EQ(DifferenceFrom(5, Memory()), "");
    EXPECT_EQ(Memory().modified, 0);
    TriggerAction("editRedo");
    EXPECT_EQ(DifferenceFrom(6, Memory()), "");
    EXPECT_EQ(Memory().modified, 1);
}

TEST_F(TransferCommandsTest, ReceiveAsksToSaveChangesFirst)
{
    UseDevice();
    StartOnLoopback();
    MakeDocument(Memory(), 4);
    Memory().modified = 1;
    CDialogRunner::SetUnattendedResponder([this](QDialog&) {
        ++m_dialogs;
        return int(QDialog::Rejected);
    });

    CMessageBox::SetNextAnswer(QMessageBox::Cancel);
    TriggerAction("fileReceive");
    EXPECT_EQ(m_dialogs, 0);
    EXPECT_EQ(DifferenceFrom(4, Memory()), "");

    CMessageBox::SetNextAnswer(QMessageBox::No);
    TriggerAction("fileReceive");
    EXPECT_EQ(m_dialogs, 1);
    EXPECT_EQ(DifferenceFrom(4, Memory()), "");
}

TEST_F(TransferCommandsTest, ClosedPortsAreReported)
{
    StartOnLoopback();
    EXPECT_FALSE(IsEnabled("fileReceive"));
    EXPECT_FALSE(IsEnabled("fileSend"));
    EXPECT_FALSE(RunReceiveCommand(&Frame(), m_app->Ports(), Memory()));
    EXPECT_EQ(CMessageBox::LastText(), QStringLiteral("Midi Input device is not open"));
    EXPECT_FALSE(RunSendCommand(&Frame(), m_app->Ports(), Memory()));
    EXPECT_EQ(CMessageBox::LastText(), QStringLiteral("Midi Output device is not open"));
}

TEST_F(TransferCommandsTest, AQuickSendShowsNoDialog)
{
    UseDevice();
    StoreNumber("MidiOutBufDelay", 0);
    StartOnLoopback();
    MakeDocument(Memory(), 5);
    CDialogRunner::SetUnattendedResponder([this](QDialog&) {
        ++m_dialogs;
        return int(QDialog::Rejected);
    });

    TriggerAction("fileSend");

    EXPECT_EQ(m_dialogs, 0);
    EXPECT_EQ(Device().TakeReceived(), DumpOf(5));
}

TEST_F(TransferCommandsTest, SendShowsSendingUntilTheLastMessageHasLeft)
{
    UseDevice();
    StoreNumber("MidiOutBufSize", 64);
    StoreNumber("MidiOutBufNumber", 2);
    StoreNumber("MidiOutBufDelay", 0);
    StartOnLoopback();
    MakeDocument(Memory(), 6);
    const Bytes dump = DumpOf(6);
    const QString sending = QStringLiteral("Sending %1 bytes").arg(dump.size());
    Device().SetHoldOutput(true);
    AnswerProgress([&](CMidiProgressDlg& dialog) {
        EXPECT_EQ(dialog.StatusText(), sending);
        EXPECT_EQ(dialog.ProgressMaximum(), static_cast<int>(dump.size()));
        // Two buffers are out with the driver and go no further.
        EXPECT_TRUE(WaitUntil([&] { return dialog.ProgressValue() == 128; }));
        Device().ReleaseOutput(1);
        EXPECT_TRUE(WaitUntil([&] { return dialog.ProgressValue() == 192; }));
        EXPECT_EQ(dialog.StatusText(), sending);
        Device().SetHoldOutput(false);
        Device().ReleaseOutput();
    });

    TriggerAction("fileSend");

    EXPECT_EQ(m_dialogs, 1);
    EXPECT_EQ(Device().TakeReceived(), dump);
}

TEST_F(TransferCommandsTest, CancelDropsWhatWasNotSent)
{
    UseDevice();
    StoreNumber("MidiOutBufSize", 64);
    StoreNumber("MidiOutBufNumber", 2);
    StartOnLoopback();
    MakeDocument(Memory(), 7);
    const std::size_t size = DumpOf(7).size();
    Device().SetHoldOutput(true);
    AnswerProgress([&](CMidiProgressDlg& dialog) {
        WaitForText(dialog, QStringLiteral("Sending"));
        dialog.CancelButton()->click();
    });

    TriggerAction("fileSend");

    std::uint32_t total = 0;
    std::uint32_t sent = 0;
    std::uint32_t count = 0;
    EXPECT_FALSE(Output().GetQueueState(total, sent, count));
    EXPECT_EQ(Device().GetHeldOutputCount(), 0u);
    EXPECT_LT(Device().TakeReceived().size(), size);
}

// A transfer that sends a request and awaits the answer: the dialog says
// what it sent above what comes back.
TEST_F(TransferCommandsTest, TheAnswerToASendIsShownBelowWhatWasSent)
{
    UseDevice();
    StoreNumber("MidiOutBufDelay", 0);
    StartOnLoopback();
    const Bytes request = UnknownSysex(6);
    const Bytes dump = DumpOf(8);
    Device().SetReceiver([this, &dump](const std::uint8_t* data, std::size_t size) {
        if (size > 0 && data[size - 1] == 0xF7)
            Device().Feed(dump);
    });
    QString first;
    QString last;
    AnswerProgress([&](CMidiProgressDlg& dialog) {
        first = dialog.StatusText();
        last = WaitForText(dialog, QStringLiteral("Sent 6 bytes\nReceived"));
    });

    CMidiProgressDlg dialog(&Frame());
    CSysexTransfer transfer(Input(), Output(), dialog);
    EXPECT_TRUE(transfer.RunTransfer(AwaitedSysex::Mmt8Dump, request));

    Device().SetReceiver(nullptr);
    EXPECT_EQ(first, QStringLiteral("Sending 6 bytes"));
    EXPECT_EQ(
        last,
        QStringLiteral("Sent 6 bytes\nReceived Alesis MMT8 sysex %1 bytes\n").arg(dump.size()));
}

TEST_F(TransferCommandsTest, LoadDeviceOnStartReceivesAtStart)
{
    UseDevice();
    StoreNumber("LoadDeviceOnStart", 1);
    const Bytes dump = DumpOf(9);
    AnswerProgress([&](CMidiProgressDlg& dialog) {
        WaitForText(dialog, QStringLiteral("To start"));
        Device().Feed(dump);
    });

    StartOnLoopback();

    EXPECT_EQ(m_dialogs, 1);
    EXPECT_EQ(DifferenceFrom(9, Memory()), "");
}

} // namespace
} // namespace tarvix::testing
