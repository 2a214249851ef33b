#include "TransportUiTest.h"

#include "framework/DialogRunner.h"
#include "framework/MessageBox.h"
#include "framework/UpDownEdit.h"
#include "settings/Settings.h"
#include "transport/ports/MidiOut.h"
#include "ui/FrameKeys.h"
#include "ui/StatusPanes.h"
#include "ui/options/GeneralPage.h"
#include "ui/options/MidiPage.h"
#include "ui/options/OptionsSheet.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QSet>
#include <QStatusBar>
#include <QTabWidget>
#include <QTest>
#include <QToolBar>

namespace tarvix::testing {
namespace {

using Sheet = COptionsSheet;

QCheckBox* Box(const Sheet& sheet, int id)
{
    return qobject_cast<QCheckBox*>(sheet.General().Control(id));
}
QComboBox* PortList(const Sheet& sheet, int id)
{
    return qobject_cast<QComboBox*>(sheet.Midi().Control(id));
}
CUpDownEdit* Number(const Sheet& sheet, int id)
{
    return qobject_cast<CUpDownEdit*>(sheet.Midi().Control(id));
}

QStringList Items(const QComboBox& list)
{
    QStringList items;
    for (int i = 0; i < list.count(); ++i)
        items << list.itemText(i);
    return items;
}

// The text of the label that names a control.
QString LabelOf(const QWidget& page, const QWidget* control)
{
    for (const QLabel* label : page.findChildren<QLabel*>())
        if (label->buddy() == control)
            return label->text();
    return {};
}

void Type(CUpDownEdit& field, const QString& text)
{
    field.clear();
    QTest::keyClicks(&field, text);
}

class OptionsDialogTest : public TransportUiTest {
protected:
    // Opens the sheet through the action, lets the test act on it and
    // returns what the sheet ended with.
    int RunOptions(const std::function<void(Sheet&)>& act, const char* action = "toolsOptions")
    {
        int result = -1;
        CDialogRunner::SetNextResponder([&](QDialog& dialog) {
            auto& sheet = dynamic_cast<Sheet&>(dialog);
            act(sheet);
            result = sheet.result();
            return result;
        });
        TriggerAction(action);
        return result;
    }

    const SettingValues& Values() { return m_app->Settings().Values(); }
};

TEST_F(OptionsDialogTest, EveryControlIsLabelledWithAMnemonicOfItsOwn)
{
    StartOnLoopback();
    RunOptions([](Sheet& sheet) {
        EXPECT_EQ(sheet.windowTitle(), QStringLiteral("Options"));
        ASSERT_EQ(sheet.Tabs().count(), 2);
        EXPECT_EQ(sheet.Tabs().tabText(0), QStringLiteral("General"));
        EXPECT_EQ(sheet.Tabs().tabText(1), QStringLiteral("MIDI"));
        EXPECT_EQ(sheet.Tabs().currentIndex(), 0);

        // A mnemonic used twice on a page, or a label that names no field,
        // sends the keyboard to the wrong control.
        const auto expectOwnMnemonics = [](const QList<QString>& texts) {
            QSet<QChar> seen;
            for (const QString& text : texts) {
                const qsizetype at = text.indexOf(QLatin1Char('&'));
                ASSERT_TRUE(at >= 0 && at + 1 < text.size()) << text.toStdString();
                EXPECT_FALSE(seen.contains(text[at + 1].toLower())) << text.toStdString();
                seen.insert(text[at + 1].toLower());
            }
        };
        QList<QString> general;
        for (const int id :
             {CGeneralPage::kLoadDeviceOnStartId, CGeneralPage::kLoadLastFileOnStartId,
              CGeneralPage::kShowToolBarButtonTextId, CGeneralPage::kShowMidiProgramNameId,
              CGeneralPage::kShowMidiControllerNameId, CGeneralPage::kShowMidiNoteNameId})
            general << (Box(sheet, id) != nullptr ? Box(sheet, id)->text() : QString());
        expectOwnMnemonics(general);
        QList<QString> midi;
        for (const int id :
             {CMidiPage::kInPortId, CMidiPage::kInBufSizeId, CMidiPage::kInBufNumberId,
              CMidiPage::kOutPortId, CMidiPage::kOutBufSizeId, CMidiPage::kOutBufNumberId,
              CMidiPage::kOutSyxDelayId, CMidiPage::kOutBufDelayId})
            midi << LabelOf(sheet.Midi(), sheet.Midi().Control(id));
        expectOwnMnemonics(midi);
        sheet.CancelButton()->click();
    });
}

TEST_F(OptionsDialogTest, StartUpChoicesExcludeEachOtherAndApplyOnOk)
{
    StoreNumber("LoadDeviceOnStart", 1);
    StartOnLoopback();
    const int result = RunOptions([](Sheet& sheet) {
        QCheckBox* device = Box(sheet, CGeneralPage::kLoadDeviceOnStartId);
        QCheckBox* file = Box(sheet, CGeneralPage::kLoadLastFileOnStartId);
        EXPECT_TRUE(device->isChecked());
        EXPECT_FALSE(sheet.ApplyButton()->isEnabled());

        file->click();
        EXPECT_TRUE(file->isChecked());
        EXPECT_FALSE(device->isChecked());
        EXPECT_TRUE(sheet.ApplyButton()->isEnabled());
        device->click();
        EXPECT_TRUE(device->isChecked());
        EXPECT_FALSE(file->isChecked());
        // Unchecking one leaves the other alone.
        device->click();
        EXPECT_FALSE(file->isChecked());
        file->click();

        Box(sheet, CGeneralPage::kShowToolBarButtonTextId)->click();
        Box(sheet, CGeneralPage::kShowMidiNoteNameId)->click();
        sheet.OkButton()->click();
    });
    EXPECT_EQ(result, QDialog::Accepted);
    EXPECT_EQ(Values().loadDeviceOnStart, 0u);
    EXPECT_EQ(Values().loadLastFileOnStart, 1u);
    EXPECT_EQ(Values().showToolBarButtonText, 1u);
    EXPECT_EQ(Values().showMidiNoteName, 0u);
    EXPECT_EQ(Values().showMidiProgramName, 1u);
    Frame().UpdateUserInterface();
    EXPECT_EQ(Frame().ToolBar().toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
}

TEST_F(OptionsDialogTest, BothStartUpChoicesStoredShowAsStored)
{
    StoreNumber("LoadDeviceOnStart", 1);
    StoreNumber("LoadLastFileOnStart", 1);
    StartOnLoopback();
    RunOptions([](Sheet& sheet) {
        EXPECT_TRUE(Box(sheet, CGeneralPage::kLoadDeviceOnStartId)->isChecked());
        EXPECT_TRUE(Box(sheet, CGeneralPage::kLoadLastFileOnStartId)->isChecked());
        sheet.CancelButton()->click();
    });
}

TEST_F(OptionsDialogTest, CancelKeepsTheSettingsAndThePorts)
{
    UseDevice();
    StartOnLoopback();
    const SettingValues before = Values();
    const int result = RunOptions([](Sheet& sheet) {
        Box(sheet, CGeneralPage::kLoadDeviceOnStartId)->click();
        sheet.SetActivePage(Sheet::kMidiPage);
        PortList(sheet, CMidiPage::kOutPortId)->setCurrentIndex(0);
        Type(*Number(sheet, CMidiPage::kOutBufNumberId), "3");
        sheet.CancelButton()->click();
    });
    EXPECT_EQ(result, QDialog::Rejected);
    EXPECT_EQ(Values().loadDeviceOnStart, before.loadDeviceOnStart);
    EXPECT_EQ(Values().midiOutDevice, kDeviceName);
    EXPECT_EQ(Values().midiOutBufNumber, before.midiOutBufNumber);
    EXPECT_TRUE(Device().IsOutputOpen());
}

TEST_F(OptionsDialogTest, PortListsOfferNoneAndTheDriversPorts)
{
    Driver().CreatePort("Synth");
    StoreString("MidiInDevice", "Synth");
    StoreString("MidiOutDevice", "Unplugged");
    StartOnLoopback();
    RunOptions(
        [](Sheet& sheet) {
            sheet.SetActivePage(Sheet::kMidiPage);
            const QStringList ports{"<none>", kDeviceName, "Synth"};
            QComboBox* input = PortList(sheet, CMidiPage::kInPortId);
            QComboBox* output = PortList(sheet, CMidiPage::kOutPortId);
            EXPECT_EQ(Items(*input), ports);
            EXPECT_EQ(Items(*output), ports);
            EXPECT_EQ(input->currentText(), QStringLiteral("Synth"));
            // A port that is gone shows as none, and is stored so.
            EXPECT_EQ(output->currentIndex(), 0);
            sheet.OkButton()->click();
        },
        "toolsOptions");
    EXPECT_EQ(Values().midiInDevice, "Synth");
    EXPECT_EQ(Values().midiOutDevice, "");
}

TEST_F(OptionsDialogTest, EmptyPortListsSayWhyAsTheCommandLineDoes)
{
    StartOnLoopback();
    const auto reasonShown = [this] {
        QString shown;
        RunOptions([&shown](Sheet& sheet) {
            sheet.SetActivePage(Sheet::kMidiPage);
            const auto* reason = sheet.findChild<QLabel*>(QStringLiteral("portsReason"));
            shown = reason != nullptr && !reason->isHidden() ? reason->text() : QString();
            sheet.CancelButton()->click();
        });
        return shown;
    };
    EXPECT_EQ(reasonShown(), QString());

    Driver().RemovePort(kDeviceName);
    Driver().SetUnavailableReason("No JACK server is running.");
    EXPECT_EQ(reasonShown(), QStringLiteral("No JACK server is running."));
}

TEST_F(OptionsDialogTest, NumbersOutsideTheirRangeKeepThePageWithAMessage)
{
    StartOnLoopback();
    const SettingValues before = Values();
    RunOptions([](Sheet& sheet) {
        sheet.SetActivePage(Sheet::kMidiPage);
        struct Case {
            int id;
            const char* entry;
            const char* message;
        };
        const Case cases[] = {
            {CMidiPage::kInBufSizeId, "63", "Please enter an integer between 64 and 65535."},
            {CMidiPage::kInBufNumberId, "1025", "Please enter an integer between 1 and 1024."},
            {CMidiPage::kOutBufSizeId, "65536", "Please enter an integer between 64 and 65535."},
            {CMidiPage::kOutBufNumberId, "0", "Please enter an integer between 1 and 1024."},
            {CMidiPage::kOutSyxDelayId, "1001", "Please enter an integer between 0 and 1000."},
            {CMidiPage::kOutBufDelayId, "", "Please enter an integer between 0 and 1000."},
            {CMidiPage::kOutBufDelayId, "5x", "Please enter an integer between 0 and 1000."},
        };
        for (const Case& c : cases) {
            CUpDownEdit* field = Number(sheet, c.id);
            const QString kept = field->text();
            Type(*field, QString::fromLatin1(c.entry));
            const int shown = CMessageBox::ShownCount();
            sheet.OkButton()->click();
            EXPECT_EQ(CMessageBox::ShownCount(), shown + 1) << c.id;
            EXPECT_EQ(CMessageBox::LastText(), QString::fromLatin1(c.message)) << c.id;
            EXPECT_EQ(sheet.result(), 0) << c.id;
            // Nor can the user go to the other page.
            sheet.Tabs().setCurrentIndex(Sheet::kGeneralPage);
            EXPECT_EQ(sheet.Tabs().currentIndex(), Sheet::kMidiPage) << c.id;
            Type(*field, kept);
        }
        // The buttons keep to the range.
        CUpDownEdit* size = Number(sheet, CMidiPage::kInBufSizeId);
        Type(*size, "65535");
        size->stepBy(1);
        EXPECT_EQ(size->text(), QStringLiteral("65535"));
        Type(*size, "64");
        size->stepBy(-1);
        EXPECT_EQ(size->text(), QStringLiteral("64"));
        Type(*size, "256");
        EXPECT_TRUE(sheet.SetActivePage(Sheet::kGeneralPage));
        sheet.OkButton()->click();
        EXPECT_EQ(sheet.result(), QDialog::Accepted);
    });
    EXPECT_EQ(Values().midiInBufNumber, before.midiInBufNumber);
    EXPECT_EQ(Values().midiOutSyxDelay, before.midiOutSyxDelay);
}

TEST_F(OptionsDialogTest, ApplyWritesTheSettingsAndReopensThePorts)
{
    UseDevice(true, false);
    StartOnLoopback();
    EXPECT_FALSE(Device().IsOutputOpen());
    QStringList status;
    QObject::connect(Frame().statusBar(), &QStatusBar::messageChanged,
                     [&status](const QString& text) { status << text; });

    RunOptions([&](Sheet& sheet) {
        sheet.SetActivePage(Sheet::kMidiPage);
        PortList(sheet, CMidiPage::kOutPortId)->setCurrentIndex(1);
        EXPECT_TRUE(sheet.ApplyButton()->isEnabled());
        Type(*Number(sheet, CMidiPage::kOutBufSizeId), "128");
        Type(*Number(sheet, CMidiPage::kOutBufNumberId), "4");
        Type(*Number(sheet, CMidiPage::kOutSyxDelayId), "5");
        Type(*Number(sheet, CMidiPage::kOutBufDelayId), "0");
        // Apply has an access key of its own.
        EXPECT_EQ(sheet.ApplyButton()->text(), QStringLiteral("&Apply"));
        EXPECT_EQ(sheet.ApplyButton()->shortcut(), QKeySequence(Qt::ALT | Qt::Key_A));
        sheet.ApplyButton()->click();

        EXPECT_FALSE(sheet.ApplyButton()->isEnabled());
        EXPECT_EQ(status,
                  (QStringList{"Opening Midi Input device", "Opening Midi Output device", ""}));
        EXPECT_TRUE(Device().IsInputOpen());
        EXPECT_TRUE(Device().IsOutputOpen());
        sheet.CancelButton()->click();
    });

    EXPECT_EQ(Values().midiOutDevice, kDeviceName);
    EXPECT_EQ(Values().midiOutBufSize, 128u);
    EXPECT_EQ(Values().midiOutBufNumber, 4u);
    EXPECT_EQ(Values().midiOutSyxDelay, 5u);
    EXPECT_EQ(Values().midiOutBufDelay, 0u);
    EXPECT_EQ(Output().GetBufferSize(), 128u);
    EXPECT_EQ(Output().GetBufferCount(), 4u);
    EXPECT_EQ(Output().GetSysexDelay(), 5u);
    EXPECT_EQ(Output().GetBufferDelay(), 0u);
    ProcessEvents();
    EXPECT_EQ(Frame().StatusPanes().OutputText(), QString::fromLatin1(kDeviceName));
    EXPECT_TRUE(IsEnabled("fileSend"));

    // Kept by the settings object until the program ends, then stored.
    Stop();
    CSettings stored(CSettingsKey::InFile(SettingsPath().toStdString()));
    EXPECT_EQ(stored.Values().midiOutDevice, kDeviceName);
    EXPECT_EQ(stored.Values().midiOutBufSize, 128u);
}

class OptionsFocusTest : public OptionsDialogTest {
protected:
    void DoubleClick(QWidget* pane)
    {
        QMouseEvent click(QEvent::MouseButtonDblClick, QPointF(5, 5),
                          pane->mapToGlobal(QPointF(5, 5)), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(pane, &click);
        ProcessEvents();
    }

    // The control that has the focus once the sheet shows.
    static std::function<int(QDialog&)> FocusedControl(int& page, int& control,
                                                       std::function<void(Sheet&)> then = {})
    {
        return [&page, &control, then](QDialog& dialog) {
            auto& sheet = dynamic_cast<Sheet&>(dialog);
            sheet.show();
            ProcessEvents();
            page = sheet.Tabs().currentIndex();
            const QWidget* focus = sheet.focusWidget();
            control = focus != nullptr ? focus->property("controlId").toInt() : 0;
            if (then)
                then(sheet);
            if (sheet.isVisible())
                sheet.reject();
            return sheet.result();
        };
    }
};

TEST_F(OptionsFocusTest, PortPanesOpenTheMidiPageAtTheirPortList)
{
    UseDevice();
    StartOnLoopback();
    int page = -1;
    int control = -1;
    CDialogRunner::SetNextResponder(FocusedControl(page, control));
    DoubleClick(Frame().StatusPanes().InputPane());
    EXPECT_EQ(page, Sheet::kMidiPage);
    EXPECT_EQ(control, kMidiInPortControl);

    // The output pane, and a change there shows in the panes at once.
    CDialogRunner::SetNextResponder(FocusedControl(page, control, [](Sheet& sheet) {
        PortList(sheet, CMidiPage::kInPortId)->setCurrentIndex(0);
        sheet.OkButton()->click();
    }));
    DoubleClick(Frame().StatusPanes().OutputPane());
    EXPECT_EQ(page, Sheet::kMidiPage);
    EXPECT_EQ(control, kMidiOutPortControl);
    EXPECT_TRUE(Frame().StatusPanes().InputText().isEmpty());
    EXPECT_EQ(Frame().StatusPanes().OutputText(), QString::fromLatin1(kDeviceName));
}

TEST_F(OptionsFocusTest, TheMidiPageFocusesTheOutputListWhenFirstShown)
{
    StartOnLoopback();
    int page = -1;
    int control = -1;
    int midiControl = -1;
    CDialogRunner::SetNextResponder(FocusedControl(page, control, [&midiControl](Sheet& sheet) {
        sheet.SetActivePage(Sheet::kMidiPage);
        ProcessEvents();
        midiControl = sheet.focusWidget()->property("controlId").toInt();
    }));
    TriggerAction("toolsOptions");
    EXPECT_EQ(page, Sheet::kGeneralPage);
    EXPECT_EQ(midiControl, CMidiPage::kOutPortId);
}

} // namespace
} // namespace tarvix::testing
