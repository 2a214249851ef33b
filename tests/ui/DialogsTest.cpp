// The edit dialogs on their own: what they show, what they refuse and what
// they hand back.
#include "framework/MessageBox.h"
#include "framework/UpDownEdit.h"
#include "model/Mmt8Memory.h"
#include "ui/edit/PartLengthDialog.h"
#include "ui/edit/SongTempoDialog.h"
#include "ui/edit/StepPropertiesDialog.h"

#include "EditorTestBase.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>

namespace tarvix::testing {
namespace {

class DialogsTest : public ::testing::Test {
protected:
    DialogsTest()
    {
        CMessageBox::ResetScript();
        CMessageBox::SetUnattendedAnswer(QMessageBox::Ok);
    }
    ~DialogsTest() override { CMessageBox::ResetScript(); }

    // Types text and presses OK; returns whether the dialog closed.
    static bool Confirm(CNumberDialog& dialog, const char* text)
    {
        dialog.Field().SetText(QString::fromLatin1(text));
        // The focus elsewhere, as after a click on OK.
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->setFocus();
        return ClickOk(dialog) == QDialog::Accepted;
    }
};

TEST_F(DialogsTest, PartLengthRefusesWhatIsNotABeatCount)
{
    CPartLengthDialog dialog(4);
    dialog.show();
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Part length"));
    EXPECT_EQ(
        dialog.findChild<QLabel*>(QStringLiteral("note"))->text(),
        QStringLiteral("Note: decreasing number of beats delets all part data beyond new end."));
    for (const char* refused : {"683", "-1", "", "12x"}) {
        const int shown = CMessageBox::ShownCount();
        EXPECT_FALSE(Confirm(dialog, refused)) << refused;
        EXPECT_EQ(CMessageBox::ShownCount(), shown + 1);
        EXPECT_EQ(
            CMessageBox::LastText(),
            QStringLiteral("Invalid beat count value. Please enter an integer between 0 and 682."));
        EXPECT_EQ(CMessageBox::LastIcon(), QMessageBox::Critical);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(dialog.Field().SelectedText(), QString::fromLatin1(refused));
        EXPECT_EQ(dialog.focusWidget(), &dialog.Field());
    }
    EXPECT_TRUE(Confirm(dialog, "0"));
    EXPECT_EQ(dialog.Beats(), 0u);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(DialogsTest, SongTempoAcceptsTwentyToTwoHundredFiftyFive)
{
    CSongTempoDialog dialog(120);
    dialog.show();
    for (const char* refused : {"19", "256", "abc"}) {
        EXPECT_FALSE(Confirm(dialog, refused)) << refused;
        EXPECT_EQ(CMessageBox::LastText(),
                  QStringLiteral(
                      "Invalid song tempo value. Please enter an integer between 20 and 255."));
        EXPECT_EQ(dialog.Field().SelectedText(), QString::fromLatin1(refused));
    }
    EXPECT_TRUE(Confirm(dialog, " 20 "));
    EXPECT_EQ(dialog.Tempo(), 20u);
    CSongTempoDialog top(0);
    EXPECT_TRUE(Confirm(top, "255"));
    EXPECT_EQ(top.Tempo(), 255u);
}

TEST_F(DialogsTest, TheArrowsStayWithinTheRange)
{
    CUpDownEdit field;
    field.SetRange(20, 255);
    field.SetValue(254);
    field.stepBy(5);
    EXPECT_EQ(field.Value(), 255);
    field.stepBy(-1000);
    EXPECT_EQ(field.Value(), 20);
    field.SetText(QStringLiteral("fast"));
    field.stepBy(1);
    EXPECT_EQ(field.Value(), 21);
    // Wide enough to show the largest number of its range.
    field.SetRange(64, 65535);
    EXPECT_GT(field.sizeHint().width(),
              field.fontMetrics().horizontalAdvance(QStringLiteral("65535")));
}

class StepPropertiesTest : public DialogsTest {
protected:
    StepPropertiesTest()
    {
        memory.SetPartName(12, "Drums");
        steps = {{3, 0xFF}, {12, 0x15}, {0, 0x00}};
    }

    QComboBox& Parts(QDialog& dialog)
    {
        return *dialog.findChild<QComboBox*>(QStringLiteral("partList"));
    }
    QString Checked(QDialog& dialog)
    {
        QString boxes;
        for (int track = 1; track <= 8; ++track)
            boxes += dialog.findChild<QCheckBox*>(QStringLiteral("track%1").arg(track))->isChecked()
                         ? QLatin1Char('x')
                         : QLatin1Char('.');
        return boxes;
    }

    CMmt8Memory memory;
    std::vector<Mmt8Step> steps;
};

TEST_F(StepPropertiesTest, TypingAStepNumberShowsThatStepClamped)
{
    CStepPropertiesDialog dialog(memory, steps, 0);
    CUpDownEdit& field = *dialog.findChild<CUpDownEdit*>();
    const std::pair<const char*, int> cases[] = {{"3", 2}, {"0", 0}, {"2", 1}, {"99", 2}, {"", 0}};
    for (const auto& [typed, shown] : cases) {
        field.SetText(QString::fromLatin1(typed));
        EXPECT_EQ(dialog.ShownStep(), shown) << typed;
        EXPECT_EQ(field.text(), QString::fromLatin1(typed)); // the text is left as typed
    }
    field.SetText(QStringLiteral("3"));
    EXPECT_EQ(Checked(dialog), QStringLiteral("........"));
}

TEST_F(StepPropertiesTest, OpensAtTheActivatedStepAndEditsTheCopyOnly)
{
    CStepPropertiesDialog dialog(memory, steps, 1);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Song step properties"));
    EXPECT_EQ(dialog.findChild<CUpDownEdit*>()->text(), QStringLiteral("2"));
    EXPECT_EQ(Parts(dialog).currentText(), QStringLiteral("12 Drums"));
    EXPECT_EQ(Checked(dialog), QStringLiteral("x.x.x..."));

    dialog.findChild<CUpDownEdit*>()->SetText(QStringLiteral("1"));
    Parts(dialog).setCurrentIndex(20);
    emit Parts(dialog).activated(20);
    dialog.findChild<QCheckBox*>(QStringLiteral("track8"))->click();
    dialog.findChild<CUpDownEdit*>()->SetText(QStringLiteral("3"));
    dialog.findChild<QCheckBox*>(QStringLiteral("track4"))->click();
    EXPECT_EQ(dialog.Steps(), (std::vector<Mmt8Step>{{20, 0x7F}, {12, 0x15}, {0, 0x08}}));
    // Going back shows the edited step.
    dialog.findChild<CUpDownEdit*>()->SetText(QStringLiteral("1"));
    EXPECT_EQ(Parts(dialog).currentIndex(), 20);
    EXPECT_EQ(Checked(dialog), QStringLiteral("xxxxxxx."));
    EXPECT_EQ(steps[0], (Mmt8Step{3, 0xFF}));
}

} // namespace
} // namespace tarvix::testing
