// The edit commands run through the window, with their questions, messages
// and dialogs answered by script.
#include "EditorTestBase.h"

#include "framework/DialogRunner.h"
#include "framework/MessageBox.h"
#include "framework/UpDownEdit.h"
#include "ui/ListModel.h"
#include "ui/ListPane.h"
#include "ui/NavigationModel.h"
#include "ui/TreePane.h"
#include "ui/edit/EditCommands.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalSpy>

namespace tarvix::testing {
namespace {

std::vector<int> StepParts(const CMmt8Song& song)
{
    std::vector<int> parts;
    for (const Mmt8Step& step : song.steps)
        parts.push_back(step.part);
    return parts;
}

class EditCommandsTest : public EditorTest {
protected:
    void SetUp() override { StartOnSample(); }
};

TEST_F(EditCommandsTest, DeleteInTheTreeAsksOnlyForAllPartsOrAllSongs)
{
    Frame().Tree().SelectNode({NodeKind::AllParts, 0});
    CMessageBox::SetNextAnswer(QMessageBox::No);
    TriggerAction("editDelete");
    EXPECT_EQ(CMessageBox::LastText(), QStringLiteral("Do you really want to delete all parts?"));
    EXPECT_EQ(CMessageBox::LastCaption(), QStringLiteral("Warning"));
    EXPECT_EQ(CMessageBox::LastIcon(), QMessageBox::Warning);
    EXPECT_EQ(Memory().Part(3).name, "Bass line");
    EXPECT_EQ(Memory().modified, 0);

    Frame().Tree().SelectNode({NodeKind::Song, 7});
    TriggerAction("editDelete");
    EXPECT_TRUE(Memory().Song(7).IsEmpty());
    EXPECT_EQ(CMessageBox::ShownCount(), 1);
    EXPECT_TRUE(Frame().windowTitle().endsWith(QStringLiteral(" *")));

    Frame().Tree().SelectNode({NodeKind::AllSongs, 0});
    CMessageBox::SetNextAnswer(QMessageBox::Yes);
    TriggerAction("editDelete");
    EXPECT_EQ(CMessageBox::LastText(), QStringLiteral("Do you really want to delete all songs?"));
    Frame().Tree().SelectNode({NodeKind::AllParts, 0});
    CMessageBox::SetNextAnswer(QMessageBox::Yes);
    TriggerAction("editDelete");
    EXPECT_EQ(Memory().GetMemorySize(), CMmt8Memory().GetMemorySize());
}

TEST_F(EditCommandsTest, DeleteInTheListClearsEverySelectedSlot)
{
    SelectInList({NodeKind::AllParts, 0}, {12, 3});
    TriggerAction("editDelete");
    EXPECT_EQ(Memory().Part(3).beats + Memory().Part(12).beats, 0u);
    EXPECT_EQ(Frame().List().Model().rowCount(), 100);

    FillSampleDocument(Memory());
    SelectInList({NodeKind::Part, 3}, {1});
    TriggerAction("editDelete");
    EXPECT_TRUE(Memory().Part(3).tracks[1].events.empty());
    EXPECT_EQ(Memory().Part(3).beats, 4u);
}

TEST_F(EditCommandsTest, DeleteRemovesOneStepAndSelectsItsPlace)
{
    SelectInList({NodeKind::Song, 7}, {0, 1, 2});
    TriggerAction("editDelete");
    EXPECT_EQ(StepParts(Memory().Song(7)), (std::vector<int>{12, 0}));
    EXPECT_EQ(Frame().List().SelectedRows(), std::vector<int>{0});

    // With the last step gone the new last one is selected.
    SelectInList({NodeKind::Song, 7}, {1});
    TriggerAction("editDelete");
    EXPECT_EQ(StepParts(Memory().Song(7)), std::vector<int>{12});
    EXPECT_EQ(Frame().List().SelectedRows(), std::vector<int>{0});
}

TEST_F(EditCommandsTest, InsertStepAtTheSelectionOrAtTheStartUpToTheLimit)
{
    SelectInList({NodeKind::Song, 4}, {});
    TriggerAction("editInsertStep");
    EXPECT_EQ(Memory().Song(4).steps, (std::vector<Mmt8Step>{{0, 0xFF}}));
    EXPECT_EQ(Frame().List().Model().rowCount(), 1);

    SelectInList({NodeKind::Song, 7}, {2, 1});
    TriggerAction("editInsertStep");
    EXPECT_EQ(StepParts(Memory().Song(7)), (std::vector<int>{3, 12, 12, 0}));

    Memory().modified = 0;
    Memory().Song(7).steps.resize(kMaxSteps);
    Frame().RefreshViews();
    SelectInList({NodeKind::Song, 7}, {10});
    TriggerAction("editInsertStep");
    EXPECT_EQ(CMessageBox::LastText(),
              QStringLiteral("This would exceed max number of steps (255)."));
    EXPECT_EQ(CMessageBox::LastIcon(), QMessageBox::Critical);
    EXPECT_EQ(Memory().Song(7).steps.size(), 255u);
    EXPECT_EQ(Memory().modified, 0);
}

TEST_F(EditCommandsTest, IncrementAndDecrementRedrawOnlyTheirRowAndStopAtTheEnds)
{
    Memory().Song(7).steps[0].part = 99;
    SelectInList({NodeKind::Song, 7}, {0, 2});
    QSignalSpy rows(&Frame().List().Model(), &QAbstractItemModel::dataChanged);
    QSignalSpy tree(&Frame().Tree().Model(), &QAbstractItemModel::dataChanged);
    TriggerAction("editIncrement");
    EXPECT_EQ(Memory().Song(7).steps[0].part, 99);
    EXPECT_EQ(Memory().modified, 0);

    TriggerAction("editDecrement");
    EXPECT_EQ(StepParts(Memory().Song(7)), (std::vector<int>{98, 12, 0}));
    EXPECT_EQ(Memory().modified, 1);
    ASSERT_EQ(rows.count(), 1);
    EXPECT_EQ(rows[0][0].toModelIndex().row(), 0);
    EXPECT_EQ(rows[0][1].toModelIndex().row(), 0);
    EXPECT_EQ(tree.count(), 0);

    SelectInList({NodeKind::Song, 7}, {2});
    TriggerAction("editDecrement");
    EXPECT_EQ(Memory().Song(7).steps[2].part, 0);
}

TEST_F(EditCommandsTest, AssignFillsTheSongWithoutMarkingTheDocument)
{
    SelectInList({NodeKind::AllParts, 0}, {9, 2, 5});
    AnswerNextDialog([](QDialog& dialog) {
        auto* songs = dialog.findChild<QListWidget*>(QStringLiteral("songList"));
        auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("songNameEdit"));
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Assign parts to song"));
        EXPECT_EQ(songs->currentRow(), 0);
        EXPECT_EQ(songs->item(7)->text(), QStringLiteral("07 Verse"));
        EXPECT_TRUE(name->text().isEmpty());
        songs->setCurrentRow(10);
        name->setText(QStringLiteral("Chorus"));
        return ClickOk(dialog);
    });
    TriggerAction("editAssign");
    EXPECT_EQ(Memory().Song(10).steps, (std::vector<Mmt8Step>{{2, 0xFF}, {5, 0xFF}, {9, 0xFF}}));
    EXPECT_EQ(Memory().Song(10).tempo, 120);
    EXPECT_EQ(Memory().Song(10).name, "Chorus");
    EXPECT_EQ(Memory().modified, 0);
    EXPECT_EQ(Frame().windowTitle(), QStringLiteral("Tarvix"));

    // An empty name keeps the song's own, and its tempo stays.
    SelectInList({NodeKind::AllParts, 0}, {1});
    AnswerNextDialog([](QDialog& dialog) {
        dialog.findChild<QListWidget*>()->setCurrentRow(7);
        return ClickOk(dialog);
    });
    TriggerAction("editAssign");
    EXPECT_EQ(StepParts(Memory().Song(7)), std::vector<int>{1});
    EXPECT_EQ(Memory().Song(7).name, "Verse");
    EXPECT_EQ(Memory().Song(7).tempo, 96);
}

TEST_F(EditCommandsTest, BeatsAndTempoStartFromTheFirstSelectedAndGoToAll)
{
    SelectInList({NodeKind::AllParts, 0}, {3, 12});
    AnswerNextDialog([](QDialog& dialog) {
        auto* field = dialog.findChild<CUpDownEdit*>();
        EXPECT_EQ(field->text(), QStringLiteral("4"));
        field->SetText(QStringLiteral("1"));
        return ClickOk(dialog);
    });
    TriggerAction("editPartBeats");
    EXPECT_EQ(Memory().Part(12).beats, 1u);
    // The note at beat 1 went with the cut.
    EXPECT_EQ(Memory().Part(3).tracks[1].events.size(), 1u);

    SelectInList({NodeKind::AllSongs, 0}, {7, 8});
    AnswerNextDialog([](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<CUpDownEdit*>()->text(), QStringLiteral("96"));
        dialog.findChild<CUpDownEdit*>()->SetText(QStringLiteral("140"));
        return ClickOk(dialog);
    });
    TriggerAction("editSongTempo");
    EXPECT_EQ(Memory().Song(8).tempo, 140);
    EXPECT_EQ(Frame().List().Model().index(7, 2).data().toString(), QStringLiteral("140"));

    Memory().modified = 0;
    AnswerNextDialog([](QDialog& dialog) {
        dialog.findChild<CUpDownEdit*>()->SetText(QStringLiteral("30"));
        return int(QDialog::Rejected);
    });
    TriggerAction("editSongTempo");
    EXPECT_EQ(Memory().Song(7).tempo, 140);
    EXPECT_EQ(Memory().modified, 0);
}

TEST_F(EditCommandsTest, ChannelGoesToEverySelectedTrack)
{
    SelectInList({NodeKind::Part, 3}, {1, 6});
    AnswerNextDialog([](QDialog& dialog) {
        auto* channels = dialog.findChild<QComboBox*>();
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Track channel"));
        EXPECT_EQ(channels->count(), 17);
        EXPECT_EQ(channels->itemText(0), QStringLiteral("Unchanged"));
        EXPECT_EQ(channels->itemText(16), QStringLiteral("16"));
        EXPECT_EQ(channels->currentIndex(), 5);
        channels->setCurrentIndex(0);
        return ClickOk(dialog);
    });
    Memory().SetTrackChannel(3, 6, 2);
    TriggerAction("editTrackChannel");
    EXPECT_EQ(Memory().Part(3).tracks[1].channel, 0);
    EXPECT_EQ(Memory().Part(3).tracks[6].channel, 0);
    EXPECT_EQ(Memory().modified, 1);
}

TEST_F(EditCommandsTest, ActivatingAStepEditsACopyThatOkTakesOver)
{
    SelectInList({NodeKind::Song, 7}, {1});
    for (int answer : {int(QDialog::Rejected), int(QDialog::Accepted)})
        AnswerNextDialog([answer](QDialog& dialog) {
            dialog.findChild<QCheckBox*>(QStringLiteral("track2"))->click();
            return answer == QDialog::Accepted ? ClickOk(dialog) : answer;
        });
    Frame().List().ActivateRow(1, -1);
    EXPECT_EQ(Memory().Song(7).steps[1].trackMask, 0x15);
    EXPECT_EQ(Memory().modified, 0);
    Frame().List().ActivateRow(1, -1);
    EXPECT_EQ(Memory().Song(7).steps[1].trackMask, 0x17);
    EXPECT_EQ(Memory().modified, 1);

    // A song without steps opens nothing: as if cancelled.
    int opened = 0;
    CDialogRunner::SetUnattendedResponder([&](QDialog&) {
        ++opened;
        return int(QDialog::Accepted);
    });
    EXPECT_FALSE(CEditCommands(Memory(), Frame()).EditSongStep(4, 0));
    EXPECT_EQ(opened, 0);
}

} // namespace
} // namespace tarvix::testing
