#include "EditorTestBase.h"

#include "model/EventBuilders.h"

#include "ui/ListPane.h"
#include "ui/TreePane.h"
#include "ui/views/PianoRollView.h"
#include "ui/views/PianoRollWindow.h"
#include "ui/views/SongView.h"
#include "ui/views/SongViewWindow.h"
#include "ui/views/ViewWindows.h"

#include <QCheckBox>
#include <QHelpEvent>
#include <QPointer>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>

#include <cstdlib>
#include <utility>

namespace tarvix::testing {
namespace {

class ViewWindowsTest : public EditorTest {
protected:
    void SetUp() override
    {
        StartEditor();
        FillSampleDocument(Memory());
        // Part 3 gains a chord on track 5 and a controller on track 1
        // beside the two notes of track 2.
        auto& chord = Memory().Part(3).tracks[4].events;
        chord.push_back(test::Note(192, 64, 96, 0, 40));
        chord.push_back(test::Note(192, 67, 96, 0, 127));
        chord.back()->timed = 0;
        auto volume = std::make_unique<CMmt8ControlEvent>();
        volume->time = 0x60;
        volume->timed = 1;
        volume->data1 = 7;
        volume->data2 = 0x64;
        Memory().Part(3).tracks[0].events.push_back(std::move(volume));
        Frame().RefreshViews();
        ProcessEvents();
    }

    CPianoRollWindow* OpenRollOfPart3()
    {
        Frame().Tree().SelectNode({NodeKind::Part, 3});
        Frame().Tree().setFocus();
        ProcessEvents();
        Press(Qt::Key_P, Qt::ControlModifier);
        return Frame().Views().PianoRoll(3);
    }

    // Back to the main window, its list focused, as a click there does.
    void BackToList(Node node, std::initializer_list<int> rows)
    {
        ProcessEvents();
        Frame().activateWindow();
        SelectInList(node, rows);
        Frame().List().setFocus();
        ProcessEvents();
    }

    // Draws the notes now and says how many were drawn.
    static int DrawnNotes(CPianoRollView& view)
    {
        view.viewport()->repaint();
        return view.LastDrawnNotes();
    }
};

TEST_F(ViewWindowsTest, PianoRollOpensFromTheTreeWithItsKeyAndDrawsEveryNote)
{
    CPianoRollWindow* window = OpenRollOfPart3();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Piano roll - 03  Bass line"));
    CPianoRollView& view = window->View();
    EXPECT_EQ(view.Model().VisibleNoteCount(), 4);
    EXPECT_EQ(view.Model().VisibleLaneEventCount(), 1);
    // The first look fits the whole part: every note is drawn.
    EXPECT_EQ(DrawnNotes(view), 4);
    // Opening it again raises the same window.
    Frame().activateWindow();
    Frame().Tree().setFocus();
    ProcessEvents();
    Press(Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(Frame().findChildren<CPianoRollWindow*>().size(), 1);
}

// Escape reaches the window from the view that has the focus; with a
// modifier it is some other key.
TEST_F(ViewWindowsTest, EscapeClosesEitherViewWindowAndTheWindowGoes)
{
    CPianoRollWindow* roll = Frame().Views().OpenPianoRoll(3);
    CSongViewWindow* song = Frame().Views().OpenSongView(7);
    ASSERT_TRUE(roll != nullptr && song != nullptr);
    const std::pair<QPointer<QWidget>, QWidget*> windows[] = {{roll, &roll->View()},
                                                              {song, &song->View()}};
    for (const auto& [window, view] : windows) {
        QTest::keyClick(view, Qt::Key_Escape, Qt::ShiftModifier);
        EXPECT_TRUE(window->isVisible());
        QTest::keyClick(view, Qt::Key_Escape);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(window.isNull());
    }
    EXPECT_EQ(Frame().Views().PianoRoll(3), nullptr);
    EXPECT_EQ(Frame().Views().SongView(7), nullptr);
}

TEST_F(ViewWindowsTest, PianoRollCommandFollowsWhatThePanesPointAt)
{
    SelectInList({NodeKind::AllParts, 0}, {12});
    EXPECT_TRUE(IsEnabled("viewPianoRoll"));
    EXPECT_FALSE(IsEnabled("viewSongArrangement"));
    TriggerAction("viewPianoRoll");
    EXPECT_NE(Frame().Views().PianoRoll(12), nullptr);
    // A step opens its part; a song list row its song.
    SelectInList({NodeKind::Song, 7}, {0});
    TriggerAction("viewPianoRoll");
    EXPECT_NE(Frame().Views().PianoRoll(3), nullptr);
    SelectInList({NodeKind::AllSongs, 0}, {});
    EXPECT_FALSE(IsEnabled("viewSongArrangement"));
    EXPECT_FALSE(IsEnabled("viewPianoRoll"));
}

TEST_F(ViewWindowsTest, HidingATrackTakesItsNotesOffTheRoll)
{
    CPianoRollWindow* window = OpenRollOfPart3();
    ASSERT_NE(window, nullptr);
    QCheckBox* track5 = window->TrackBox(4);
    track5->setFocus();
    QTest::keyClick(track5, Qt::Key_Space);
    ProcessEvents();
    EXPECT_FALSE(track5->isChecked());
    EXPECT_EQ(window->View().Model().VisibleNoteCount(), 2);
    EXPECT_EQ(DrawnNotes(window->View()), 2);
    QTest::keyClick(track5, Qt::Key_Space);
    EXPECT_EQ(DrawnNotes(window->View()), 4);
}

TEST_F(ViewWindowsTest, PianoRollFollowsEditsAndPastes)
{
    CPianoRollWindow* window = OpenRollOfPart3();
    ASSERT_NE(window, nullptr);
    // Track 2 copied onto track 6 in the track list: two notes more.
    BackToList({NodeKind::Part, 3}, {1});
    Press(Qt::Key_C, Qt::ControlModifier);
    BackToList({NodeKind::Part, 3}, {5});
    Press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(window->View().Model().VisibleNoteCount(), 6);
    EXPECT_EQ(DrawnNotes(window->View()), 6);
    // Track 5 deleted: its chord goes.
    BackToList({NodeKind::Part, 3}, {4});
    Press(Qt::Key_Delete);
    EXPECT_EQ(window->View().Model().VisibleNoteCount(), 4);
    EXPECT_EQ(DrawnNotes(window->View()), 4);
}

TEST_F(ViewWindowsTest, TooltipNamesTheEventAsTheListingDoes)
{
    CPianoRollWindow* window = OpenRollOfPart3();
    ASSERT_NE(window, nullptr);
    CPianoRollView& view = window->View();
    const RollScale& scale = view.Scale();
    // The middle of the chord's upper note, untimed in its track.
    const QPoint upper(scale.ClockToX(192 + 48), scale.PitchToY(67) + scale.rowHeight / 2);
    EXPECT_EQ(view.NoteToolTipAt(upper),
              QStringLiteral("Track 5, bar 1 beat 3\n00C0 00 NOTE 43 7F 0060  G3"));
    QHelpEvent help(QEvent::ToolTip, upper, view.viewport()->mapToGlobal(upper));
    QApplication::sendEvent(view.viewport(), &help);
    EXPECT_EQ(QToolTip::text(), view.NoteToolTipAt(upper));
    // Between notes there is nothing to name.
    EXPECT_TRUE(view.NoteToolTipAt({scale.ClockToX(150), scale.PitchToY(100)}).isEmpty());
    // The controller in the lane below.
    const QPoint stem(view.KeysWidth() + scale.ClockToX(0x60) + 1, view.Lane()->height() - 10);
    EXPECT_EQ(view.LaneToolTipAt(stem),
              QStringLiteral("Track 1, bar 1 beat 2\n0060 00 CTRL 07 64       Volume"));
}

TEST_F(ViewWindowsTest, KeysZoomAndScrollAndScrollingDrawsOnlyWhatCameIntoView)
{
    CPianoRollWindow* window = OpenRollOfPart3();
    ASSERT_NE(window, nullptr);
    CPianoRollView& view = window->View();
    ASSERT_EQ(QApplication::focusWidget(), &view);
    const double fitted = view.Scale().pixelsPerBeat;
    Press(Qt::Key_Minus);
    EXPECT_LT(view.Scale().pixelsPerBeat, fitted);
    Press(Qt::Key_Plus);
    Press(Qt::Key_Plus);
    EXPECT_GT(view.Scale().pixelsPerBeat, fitted);
    const int rows = view.Scale().rowHeight;
    Press(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_LT(view.Scale().rowHeight, rows);
    Press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(view.Scale().rowHeight, rows);
    QScrollBar& time = *view.horizontalScrollBar();
    // What a key press draws of the notes, the view being up to date.
    auto exposedBy = [&view](int key) {
        view.viewport()->repaint();
        QRect exposed;
        struct Spy : QObject {
            QRect* exposed;
            explicit Spy(QRect* rect) : exposed(rect) {}
            bool eventFilter(QObject*, QEvent* event) override
            {
                if (event->type() == QEvent::Paint)
                    *exposed |= static_cast<QPaintEvent*>(event)->rect();
                return false;
            }
        } spy(&exposed);
        view.viewport()->installEventFilter(&spy);
        Press(key);
        view.viewport()->removeEventFilter(&spy);
        return exposed;
    };
    // The zoom kept the middle in place, so the view starts past the
    // beginning; going home after a zoom draws what came into view.
    const int zoomedAt = time.value();
    ASSERT_GT(zoomedAt, 0);
    EXPECT_GE(exposedBy(Qt::Key_Home).width(), std::min(zoomedAt, view.viewport()->width()));
    EXPECT_EQ(time.value(), 0);
    Press(Qt::Key_End);
    EXPECT_EQ(time.value(), time.maximum());
    Press(Qt::Key_Home);

    // One step right moves the pixels; only the new strip is drawn.
    const QRect exposed = exposedBy(Qt::Key_Right);
    const int moved = time.value();
    ASSERT_GT(moved, 0);
    ASSERT_LT(moved, view.viewport()->width());
    EXPECT_LE(exposed.width(), moved + 2);
    EXPECT_EQ(exposed.right(), view.viewport()->width() - 1);

    Press(Qt::Key_0);
    EXPECT_DOUBLE_EQ(view.Scale().pixelsPerBeat, fitted);
}

TEST_F(ViewWindowsTest, WheelZoomsAroundThePointerAndScrolls)
{
    CPianoRollWindow* window = OpenRollOfPart3();
    ASSERT_NE(window, nullptr);
    CPianoRollView& view = window->View();
    auto wheel = [&view](QPoint at, int delta, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event(at, view.viewport()->mapToGlobal(at), {}, {0, delta}, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
        ProcessEvents();
    };
    const QPoint pointer(view.viewport()->width() / 3, 40);
    const std::uint32_t under = view.Scale().XToClock(pointer.x());
    const double before = view.Scale().pixelsPerBeat;
    wheel(pointer, 120, Qt::ControlModifier);
    wheel(pointer, 120, Qt::ControlModifier);
    EXPECT_GT(view.Scale().pixelsPerBeat, before);
    // The clock under the pointer stays under it, to the pixel.
    EXPECT_LE(std::abs(view.Scale().ClockToX(under) - pointer.x()), 1);
    const int at = view.horizontalScrollBar()->value();
    wheel(pointer, -120, Qt::ShiftModifier);
    EXPECT_GT(view.horizontalScrollBar()->value(), at);
    const int pitchAt = view.verticalScrollBar()->value();
    wheel(pointer, -120, Qt::NoModifier);
    EXPECT_GT(view.verticalScrollBar()->value(), pitchAt);
}

TEST_F(ViewWindowsTest, SongArrangementShowsStepsAsWideAsTheirParts)
{
    Frame().Tree().SelectNode({NodeKind::Song, 7});
    Frame().Tree().setFocus();
    ProcessEvents();
    Press(Qt::Key_G, Qt::ControlModifier);
    CSongViewWindow* window = Frame().Views().SongView(7);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Song arrangement - 07  Verse"));
    CSongView& view = window->View();
    const CSongViewModel& model = view.Model();
    ASSERT_EQ(model.BlockCount(), 3);
    EXPECT_EQ(model.TotalBeats(), 12u);
    EXPECT_EQ(model.Blocks()[1].label, "12  Drums");
    EXPECT_EQ(model.Blocks()[1].trackMask, 0x15);
    // Part 12 is twice as long as part 3; part 0 is empty and takes no time.
    EXPECT_EQ(view.BlockRect(1).width(), 2 * view.BlockRect(0).width());
    EXPECT_EQ(view.BlockRect(1).left(), view.BlockRect(0).right() + 1);
    EXPECT_EQ(view.BlockRect(2).left(), view.BlockRect(1).right() + 1);
}

TEST_F(ViewWindowsTest, ChoosingABlockSelectsItsStepAndTheListSelectsTheBlock)
{
    CSongViewWindow* window = Frame().Views().OpenSongView(7);
    ASSERT_NE(window, nullptr);
    ProcessEvents();
    CSongView& view = window->View();
    QTest::mouseClick(view.Canvas(), Qt::LeftButton, {}, view.BlockRect(1).center());
    ProcessEvents();
    EXPECT_EQ(Frame().CurrentNode(), (Node{NodeKind::Song, 7}));
    EXPECT_EQ(Frame().List().SelectedRows(), std::vector<int>{1});
    Press(Qt::Key_End);
    EXPECT_EQ(Frame().List().SelectedRows(), std::vector<int>{2});
    Press(Qt::Key_Left);
    EXPECT_EQ(Frame().List().SelectedRows(), std::vector<int>{1});
    Frame().List().SelectRow(0);
    ProcessEvents();
    EXPECT_EQ(view.SelectedStep(), 0);
}

TEST_F(ViewWindowsTest, SongArrangementFollowsStepEdits)
{
    CSongViewWindow* window = Frame().Views().OpenSongView(7);
    ASSERT_NE(window, nullptr);
    BackToList({NodeKind::Song, 7}, {0});
    Press(Qt::Key_Insert);
    ASSERT_EQ(Memory().Song(7).steps.size(), 4u);
    EXPECT_EQ(window->View().Model().BlockCount(), 4);
    EXPECT_EQ(window->View().Model().TotalBeats(), 16u);
    // A changed part number shows at once, though only its row redraws.
    BackToList({NodeKind::Song, 7}, {3});
    Press(Qt::Key_Plus, Qt::KeypadModifier);
    EXPECT_EQ(Memory().Song(7).steps[3].part, 1);
    EXPECT_EQ(window->View().Model().Blocks()[3].part, 1);
}

} // namespace
} // namespace tarvix::testing
