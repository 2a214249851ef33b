#include "EditorTestBase.h"

#include "ui/DeviceNameValidator.h"
#include "ui/TreePane.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>

namespace tarvix::testing {
namespace {

// A name field as the user meets it: typed into and pasted into.
TEST(DeviceNameValidatorTest, TypedAndPastedTextKeepsToWhatTheDisplayShows)
{
    QLineEdit field;
    ApplyDeviceNameRules(field);
    QTest::keyClicks(&field, QStringLiteral("Bass"));
    QApplication::clipboard()->setText(QStringLiteral(" Caf\u00E9 \u2192"));
    QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
    // The accent goes, the arrow is refused.
    EXPECT_EQ(field.text(), QStringLiteral("Bass Cafe "));
    QTest::keyClicks(&field, QStringLiteral("\\~{}"));
    EXPECT_EQ(field.text(), QStringLiteral("Bass Cafe {}"));
    QTest::keyClicks(&field, QStringLiteral("ABCDEF"));
    EXPECT_EQ(field.text(), QStringLiteral("Bass Cafe {}AB"));

    // Typed in the middle, the cursor stays after what was typed.
    field.setText(QStringLiteral("AB"));
    field.setCursorPosition(1);
    QApplication::clipboard()->setText(QStringLiteral("\u00C9\u00DF"));
    QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field.text(), QStringLiteral("AEB"));
    EXPECT_EQ(field.cursorPosition(), 2);
}

class DeviceNamesTest : public EditorTest {
protected:
    void SetUp() override { StartOnSample(); }
};

TEST_F(DeviceNamesTest, TreeRenameKeepsToTheDisplaysCharacters)
{
    Frame().Tree().SelectNode({NodeKind::Part, 3});
    Frame().Tree().setFocus();
    ProcessEvents();
    QTest::keyClick(&Frame().Tree(), Qt::Key_F2);
    auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(field, nullptr);
    field->selectAll();
    QApplication::clipboard()->setText(QStringLiteral("Caf\u00E9 \u2192 Bar"));
    QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field->text(), QStringLiteral("Cafe  Bar"));
    QTest::keyClick(field, Qt::Key_Return);
    ProcessEvents();
    EXPECT_EQ(Memory().Part(3).name, "Cafe  Bar");
}

TEST_F(DeviceNamesTest, AssignDialogsNameKeepsToTheDisplaysCharacters)
{
    SelectInList({NodeKind::AllParts, 0}, {3});
    AnswerNextDialog([](QDialog& dialog) {
        dialog.findChild<QListWidget*>()->setCurrentRow(10);
        auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("songNameEdit"));
        QApplication::clipboard()->setText(QStringLiteral("Na\u00EFve"));
        QTest::keyClick(name, Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(name->text(), QStringLiteral("Naive"));
        return ClickOk(dialog);
    });
    TriggerAction("editAssign");
    EXPECT_EQ(Memory().Song(10).name, "Naive");
}

} // namespace
} // namespace tarvix::testing
