// Copy and Paste through the window and the system clipboard: in place
// from the selection, one format per kind, a damaged block refused whole,
// and the tree label's plain text while it is edited.
#include "EditorTestBase.h"

#include "framework/MessageBox.h"
#include "model/ClipboardBlock.h"
#include "support/RandomDocument.h"
#include "ui/ListPane.h"
#include "ui/TreePane.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMimeData>

#include <vector>

namespace tarvix::testing {
namespace {

// The names other copies of the program exchange the blocks under here.
const QString kPartsType = QStringLiteral("application/x-tarvix-parts");
const QString kTracksType = QStringLiteral("application/x-tarvix-tracks");
const QString kStepsType = QStringLiteral("application/x-tarvix-steps");

void PutOnClipboard(const QString& type, const std::vector<std::uint8_t>& block)
{
    auto* data = new QMimeData;
    data->setData(type, QByteArray(reinterpret_cast<const char*>(block.data()),
                                   static_cast<qsizetype>(block.size())));
    QGuiApplication::clipboard()->setMimeData(data);
}

QByteArray OnClipboard(const QString& type)
{
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    return data ? data->data(type) : QByteArray();
}

std::uint32_t RecordCount(const QByteArray& block)
{
    if (block.size() < 8)
        return 0;
    std::uint32_t count = 0;
    for (int i = 3; i >= 0; --i)
        count = count << 8 | static_cast<std::uint8_t>(block[4 + i]);
    return count;
}

class ClipboardTest : public EditorTest {
protected:
    void SetUp() override
    {
        QGuiApplication::clipboard()->clear();
        StartOnSample();
    }

    QString Cell(int row, int column)
    {
        return Frame().List().model()->index(row, column).data().toString();
    }

    std::vector<Mmt8Step> Steps(int song) { return Memory().Song(song).steps; }
};

TEST_F(ClipboardTest, TwoPartsApartArePastedSideBySideFromTheFirstSelectedRow)
{
    SelectInList({NodeKind::AllParts, 0}, {12, 3});
    TriggerAction("editCopy");
    EXPECT_EQ(RecordCount(OnClipboard(kPartsType)), 2u);
    EXPECT_EQ(Memory().modified, 0);

    SelectInList({NodeKind::AllParts, 0}, {10});
    ASSERT_TRUE(IsEnabled("editPaste"));
    TriggerAction("editPaste");
    // Rising order: part 3 first, whatever order the rows were picked in.
    EXPECT_EQ(Memory().Part(10).name, "Bass line");
    EXPECT_EQ(Memory().Part(11).name, "Drums");
    EXPECT_EQ(Memory().Part(10).tracks[1].events.size(), 2u);
    EXPECT_EQ(Memory().Part(12).name, "Drums"); // nothing shifted
    EXPECT_EQ(Cell(10, 1), QStringLiteral("Bass line"));
    EXPECT_EQ(Memory().modified, 1);
    EXPECT_TRUE(Frame().windowTitle().endsWith(QStringLiteral(" *")));
}

TEST_F(ClipboardTest, StepsReplaceFromTheSelectedStepAndAppendAtTheEnd)
{
    const std::vector<Mmt8Step> verse = Steps(7);
    Memory().AppendStep(8, 40, 0x01);
    Memory().AppendStep(8, 41, 0x02);
    SelectInList({NodeKind::Song, 7}, {0, 1, 2});
    TriggerAction("editCopy");

    SelectInList({NodeKind::Song, 8}, {1});
    TriggerAction("editPaste");
    EXPECT_EQ(Steps(8), (std::vector<Mmt8Step>{{40, 0x01}, verse[0], verse[1], verse[2]}));
    EXPECT_EQ(Frame().List().model()->rowCount(), 4);
    EXPECT_EQ(Cell(3, 3), QStringLiteral("None"));
}

TEST_F(ClipboardTest, WithNoRowSelectedOnlyTheStepListPastes)
{
    SelectInList({NodeKind::AllParts, 0}, {3});
    TriggerAction("editCopy");
    SelectInList({NodeKind::AllParts, 0}, {});
    Frame().ExecuteCommand(kCmdPaste);
    ProcessEvents();
    EXPECT_EQ(Memory().Part(0).name, "");
    EXPECT_EQ(Memory().modified, 0);

    SelectInList({NodeKind::Song, 7}, {2});
    TriggerAction("editCopy");
    Memory().AppendStep(9, 50, 0xFF);
    Memory().AppendStep(9, 51, 0xFF);
    SelectInList({NodeKind::Song, 9}, {});
    Frame().ExecuteCommand(kCmdPaste);
    ProcessEvents();
    EXPECT_EQ(Steps(9), (std::vector<Mmt8Step>{{0, 0x00}, {51, 0xFF}}));
    EXPECT_EQ(Memory().modified, 1);
}

TEST_F(ClipboardTest, ABlockOfNoRecordsChangesNothingButMarksTheDocument)
{
    CMmt8Memory before;
    FillSampleDocument(before);
    PutOnClipboard(kPartsType, WriteClipboardBlock(before, ClipboardKind::Parts, 0, {}));
    SelectInList({NodeKind::AllParts, 0}, {3});
    TriggerAction("editPaste");
    EXPECT_EQ(DescribeDifference(before, Memory()), "");
    EXPECT_EQ(Memory().modified, 1);
}

TEST_F(ClipboardTest, EachListPastesOnlyItsOwnFormat)
{
    SelectInList({NodeKind::Part, 3}, {1});
    TriggerAction("editCopy");
    EXPECT_FALSE(OnClipboard(kTracksType).isEmpty());
    EXPECT_TRUE(IsEnabled("editPaste"));

    SelectInList({NodeKind::AllParts, 0}, {5});
    EXPECT_FALSE(IsEnabled("editPaste"));
    Frame().ExecuteCommand(kCmdPaste);
    ProcessEvents();
    EXPECT_TRUE(Memory().Part(5).tracks[1].events.empty());
    EXPECT_EQ(Memory().modified, 0);

    // The track lands in another part's track 8; a second one would be dropped.
    SelectInList({NodeKind::Part, 12}, {7});
    TriggerAction("editPaste");
    EXPECT_EQ(Memory().Part(12).tracks[7].events.size(), 2u);
    EXPECT_EQ(Memory().Part(12).tracks[7].channel, 5);
    // The tree reads parts and songs only.
    Frame().Tree().SelectNode({NodeKind::Part, 4});
    Frame().SwitchPane(Pane::Tree);
    EXPECT_FALSE(IsEnabled("editPaste"));
}

TEST_F(ClipboardTest, ADamagedBlockIsReportedAndChangesNothing)
{
    CMmt8Memory before;
    FillSampleDocument(before);
    std::vector<std::uint8_t> block =
        WriteClipboardBlock(before, ClipboardKind::Parts, 0, std::vector<int>{3, 12});
    // Cut inside the second part, the length field made to agree.
    block.resize(block.size() - 10);
    const auto length = static_cast<std::uint32_t>(block.size() - 4);
    for (std::size_t i = 0; i < 4; ++i)
        block[i] = static_cast<std::uint8_t>(length >> (8 * i));
    PutOnClipboard(kPartsType, block);

    SelectInList({NodeKind::AllParts, 0}, {20});
    TriggerAction("editPaste");
    EXPECT_TRUE(CMessageBox::LastText().startsWith(
        QStringLiteral("The data on the clipboard is damaged; nothing was pasted.")))
        << CMessageBox::LastText().toStdString();
    EXPECT_EQ(DescribeDifference(before, Memory()), "");
    EXPECT_EQ(Memory().modified, 0);
}

TEST_F(ClipboardTest, ARecordBeyondTheEditorsLimitsIsReportedAndChangesNothing)
{
    CMmt8Memory before;
    FillSampleDocument(before);
    CMmt8Memory odd = before;
    odd.Part(12).beats = 20000;
    PutOnClipboard(kPartsType,
                   WriteClipboardBlock(odd, ClipboardKind::Parts, 0, std::vector<int>{3, 12}));

    SelectInList({NodeKind::AllParts, 0}, {20});
    TriggerAction("editPaste");
    EXPECT_EQ(CMessageBox::LastText(),
              QStringLiteral("The data on the clipboard is damaged; nothing was pasted.\n"
                             "Invalid part: 20000 beats, more than 682"));
    EXPECT_EQ(DescribeDifference(before, Memory()), "");
    EXPECT_EQ(Memory().modified, 0);
}

TEST_F(ClipboardTest, TheTreeCopiesAllOrOneAndPastesFromTheNodesSlot)
{
    Frame().Tree().SelectNode({NodeKind::AllSongs, 0});
    Frame().SwitchPane(Pane::Tree);
    TriggerAction("editCopy");
    EXPECT_EQ(RecordCount(OnClipboard(QStringLiteral("application/x-tarvix-songs"))), 100u);
    Frame().Tree().SelectNode({NodeKind::Song, 7});
    TriggerAction("editCopy");
    EXPECT_EQ(RecordCount(OnClipboard(QStringLiteral("application/x-tarvix-songs"))), 1u);
    Frame().Tree().SelectNode({NodeKind::Song, 99});
    TriggerAction("editPaste");
    EXPECT_EQ(Memory().Song(99).name, "Verse");
    EXPECT_EQ(Memory().Song(99).steps, Steps(7));

    // Ten parts of another document, serialised there, pasted on part 95.
    CMmt8Memory other;
    std::mt19937 random(3);
    FillRandomDocument(other, random, {100, 5, 0, 0});
    PutOnClipboard(kPartsType, WriteClipboardBlock(other, ClipboardKind::Parts, 0,
                                                   std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    Frame().Tree().SelectNode({NodeKind::Part, 95});
    TriggerAction("editPaste");
    CMmt8Memory expected;
    FillSampleDocument(expected);
    expected.Song(99) = expected.Song(7);
    for (int part = 95; part < 100; ++part)
        expected.Part(part) = other.Part(part - 95);
    EXPECT_EQ(DescribeDifference(expected, Memory()), "");

    // On "Parts" the same block starts at part 0.
    Frame().Tree().SelectNode({NodeKind::AllParts, 0});
    TriggerAction("editPaste");
    EXPECT_EQ(Memory().Part(9).name, other.Part(9).name);
    EXPECT_EQ(Memory().Part(12).name, "Drums");
}

TEST_F(ClipboardTest, WhileALabelIsEditedPasteTakesPlainText)
{
    Frame().Tree().SelectNode({NodeKind::Part, 3});
    Frame().SwitchPane(Pane::Tree);
    QGuiApplication::clipboard()->setText(QStringLiteral("Lead"));
    EXPECT_FALSE(IsEnabled("editPaste"));
    CTreePane& tree = Frame().Tree();
    tree.edit(tree.currentIndex());
    ProcessEvents();
    ASSERT_TRUE(tree.IsEditingLabel());
    EXPECT_TRUE(IsEnabled("editPaste"));

    auto* editor = qobject_cast<QLineEdit*>(tree.indexWidget(tree.currentIndex()));
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    Frame().ExecuteCommand(kCmdPaste);
    EXPECT_EQ(editor->text(), QStringLiteral("Lead"));
    EXPECT_EQ(Memory().Part(3).name, "Bass line");
    EXPECT_EQ(Memory().modified, 0);
}

} // namespace
} // namespace tarvix::testing
