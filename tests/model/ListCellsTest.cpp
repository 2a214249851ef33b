#include "EventBuilders.h"

#include "model/ListCells.h"
#include "model/Mmt8Memory.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvix::test {
namespace {

using Row = std::vector<std::string>;

class ListCellsTest : public ::testing::Test {
protected:
    Row RowOf(ListKind kind, int index, int row) const
    {
        Row cells;
        for (int column = 0; column < 4; ++column)
            cells.push_back(GetListCellText(m_memory, kind, index, row, column));
        return cells;
    }

    CMmt8Memory m_memory;
};

// The titles are the program's own texts; the list view shows them as given.
TEST_F(ListCellsTest, ColumnTitlesAndWidths)
{
    const auto layout = [](ListKind kind) {
        std::string text;
        for (const ListColumn& column : GetListColumns(kind))
            text += std::string(column.title) + "/" + std::to_string(column.widthUnits) + " ";
        return text;
    };
    EXPECT_EQ(layout(ListKind::Parts), "##/1 Part name/5 Number of beats/4 Size in bytes/0 ");
    EXPECT_EQ(layout(ListKind::Tracks), "##/1 Midi channel/5 Number of events/4 Size in bytes/0 ");
    EXPECT_EQ(layout(ListKind::Songs), "##/1 Song name/5 Beats per minute/4 Size in bytes/0 ");
    EXPECT_EQ(layout(ListKind::Steps), "##/1 Part name/5 Number of beats/4 Tracks enabled/0 ");
}

TEST_F(ListCellsTest, RowCounts)
{
    m_memory.Song(6).steps = {{1, 0xFF}, {2, 0xFF}};
    EXPECT_EQ(GetListRowCount(m_memory, ListKind::Parts, 0), 100);
    EXPECT_EQ(GetListRowCount(m_memory, ListKind::Songs, 0), 100);
    EXPECT_EQ(GetListRowCount(m_memory, ListKind::Tracks, 99), 8);
    EXPECT_EQ(GetListRowCount(m_memory, ListKind::Tracks, 100), 0);
    EXPECT_EQ(GetListRowCount(m_memory, ListKind::Steps, 6), 2);
    EXPECT_EQ(GetListRowCount(m_memory, ListKind::Steps, 5), 0);
    EXPECT_EQ(GetListRowCount(m_memory, ListKind::Steps, -1), 0);
}

TEST_F(ListCellsTest, PartRows)
{
    m_memory.Part(7).beats = 4;
    m_memory.Part(7).name = "BASS";
    m_memory.Part(7).tracks[0] = TrackOf(0, Note(0, 1, 1), Untimed(Note(0, 2, 1)));
    EXPECT_EQ(RowOf(ListKind::Parts, 0, 7), (Row{" 07", "BASS", "4", "110"}));
    EXPECT_EQ(RowOf(ListKind::Parts, 0, 99)[0], " 99");
    EXPECT_EQ(RowOf(ListKind::Parts, 0, 0)[2], ""); // no beats
}

TEST_F(ListCellsTest, TrackRows)
{
    m_memory.Part(2).tracks[0].channel = 16;
    m_memory.Part(2).tracks[7] = TrackOf(0, Note(0, 1, 1), Untimed(Note(0, 2, 1)), Note(5, 3, 1));
    EXPECT_EQ(RowOf(ListKind::Tracks, 2, 0), (Row{" 01", "16", "0", "7"}));
    EXPECT_EQ(RowOf(ListKind::Tracks, 2, 7), (Row{" 08", "Unchanged", "3", "26"}));
}

TEST_F(ListCellsTest, SongRows)
{
    m_memory.Song(42).tempo = 120;
    m_memory.Song(42).name = "CHORUS";
    m_memory.Song(42).steps = {{1, 0xFF}, {2, 0xFF}};
    EXPECT_EQ(RowOf(ListKind::Songs, 0, 42), (Row{" 42", "CHORUS", "120", "22"}));
    EXPECT_EQ(RowOf(ListKind::Songs, 0, 3), (Row{" 03", "", "", "18"}));
}

TEST_F(ListCellsTest, StepRowsShowThePartTheyPlay)
{
    m_memory.Part(5).beats = 8;
    m_memory.Part(5).name = "INTRO";
    m_memory.Song(1).steps = {{5, 0x15}, {0, 0x00}, {5, 0xFF}};
    EXPECT_EQ(RowOf(ListKind::Steps, 1, 0), (Row{" 05", "INTRO", "8", "1 3 5 "}));
    EXPECT_EQ(RowOf(ListKind::Steps, 1, 1), (Row{" 00", "", "", "None"}));
    EXPECT_EQ(RowOf(ListKind::Steps, 1, 2)[3], "All");
}

TEST_F(ListCellsTest, CellsOutsideTheListAreEmpty)
{
    m_memory.Song(1).steps = {{5, 0xFF}};
    const Row empty(4);
    EXPECT_EQ(RowOf(ListKind::Parts, 0, 100), empty);
    EXPECT_EQ(RowOf(ListKind::Parts, 0, -1), empty);
    EXPECT_EQ(RowOf(ListKind::Tracks, 0, 8), empty);
    EXPECT_EQ(RowOf(ListKind::Tracks, 100, 0), empty);
    EXPECT_EQ(RowOf(ListKind::Songs, 0, 100), empty);
    EXPECT_EQ(RowOf(ListKind::Steps, 1, 1), empty);
    EXPECT_EQ(RowOf(ListKind::Steps, 2, 0), empty);
    EXPECT_EQ(GetListCellText(m_memory, ListKind::Songs, 0, 1, 4), "");
}

} // namespace
} // namespace tarvix::test
