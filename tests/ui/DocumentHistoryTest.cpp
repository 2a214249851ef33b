// The undo history on its own: what a step holds, the byte budget and the
// clean point when old steps are dropped.
#include "ui/undo/DocumentHistory.h"
#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "support/FullMemory.h"
#include "support/RandomDocument.h"
#include "support/SeededDocuments.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvix::testing {
namespace {

const UndoStepKind kEdit{"Edit"};

void Rename(CDocumentHistory& history, CMmt8Memory& memory, int part, const char* name)
{
    history.Record(kEdit, [&] {
        memory.SetPartName(part, name);
        memory.modified = 1;
    });
}

TEST(DocumentHistoryTest, AStepHoldsOnlyWhatChangedAndNestedChangesAreOne)
{
    CMmt8Memory memory;
    CDocumentHistory history(memory);
    history.Record(kEdit, [] {});
    EXPECT_EQ(history.StepCount(), 0u);

    history.Record(kEdit, [&] {
        memory.SetPartName(1, "One");
        history.Record(kEdit, [&] { memory.SetSongName(2, "Two"); });
    });
    EXPECT_EQ(history.StepCount(), 1u);
    // Two records, before and after: a part and a song, not all 201.
    EXPECT_LT(history.Bytes(), 400u);
    // Records that did not change are left alone by the undo.
    memory.SetPartName(50, "Untouched");
    ASSERT_TRUE(history.Undo());
    EXPECT_EQ(memory.Part(1).name, "");
    EXPECT_EQ(memory.Song(2).name, "");
    EXPECT_EQ(memory.Part(50).name, "Untouched");
    ASSERT_TRUE(history.Redo());
    EXPECT_EQ(memory.Song(2).name, "Two");
    EXPECT_FALSE(history.Redo());
}

TEST(DocumentHistoryTest, UndoPutsBackExactlyWhatWasThereEvenWhatAPasteWouldRefuse)
{
    for (unsigned seed : {1u, 2u, 3u}) {
        CMmt8Memory memory;
        std::mt19937 random(seed);
        FillRandomDocument(memory, random);
        // What a damaged dump loads: a length and a channel no dialog offers.
        memory.Part(1).beats = 9998;
        memory.Part(1).tracks[3].channel = 200;
        const CMmt8Memory original = memory;
        CDocumentHistory history(memory);
        history.Record(kEdit, [&] {
            memory.InitMemory();
            memory.globalBlock[100] ^= 0xFF;
        });
        ASSERT_TRUE(history.Undo());
        EXPECT_EQ(DescribeDifference(original, memory), "") << "seed " << seed;
        EXPECT_EQ(memory.Part(1).beats, 9998u);
        EXPECT_EQ(memory.Part(1).tracks[3].channel, 200);
        EXPECT_EQ(memory.globalBlock, original.globalBlock);
        ASSERT_TRUE(history.Redo());
        EXPECT_TRUE(memory.Part(1).IsEmpty());
    }
}

TEST(DocumentHistoryTest, TheOldestStepsGoWhenTheBudgetIsFullAndWithThemTheCleanPoint)
{
    CMmt8Memory memory;
    std::size_t stepBytes = 0;
    {
        // A rename from one letter to another holds a byte more than this.
        CDocumentHistory probe(memory);
        Rename(probe, memory, 0, "A");
        stepBytes = probe.Bytes() + 1;
        probe.Undo();
    }
    memory.modified = 0;
    CDocumentHistory history(memory, stepBytes * 3);
    for (const char* name : {"A", "B", "C", "D", "E"})
        Rename(history, memory, 0, name);
    EXPECT_EQ(history.StepCount(), 3u);
    EXPECT_LE(history.Bytes(), stepBytes * 3);
    while (history.Undo()) {
    }
    EXPECT_EQ(memory.Part(0).name, "B");
    // The file's state went with the dropped steps: never shown as clean.
    EXPECT_EQ(memory.modified, 1);

    // A step larger than the whole budget is kept, alone.
    CDocumentHistory tight(memory, 1);
    Rename(tight, memory, 0, "X");
    Rename(tight, memory, 0, "Y");
    EXPECT_EQ(tight.StepCount(), 1u);
    EXPECT_TRUE(tight.Undo());
    EXPECT_EQ(memory.Part(0).name, "X");
}

TEST(DocumentHistoryTest, AHundredStepsOfAFullDeviceFitTheBudget)
{
    FullMemory full = MakeFullMemory();
    ASSERT_EQ(full.problem, "");
    CMmt8Memory& memory = full.memory;
    const CMmt8Memory original = memory;
    CDocumentHistory history(memory);
    // Every step changes every part and every song, both ways.
    for (int step = 0; step < 100; ++step)
        history.Record(kEdit, [&] {
            if (step % 2 == 0) {
                memory.ClearPart(-1);
                memory.ClearSong(-1);
            } else {
                memory = original;
            }
        });
    EXPECT_EQ(history.StepCount(), 100u);
    EXPECT_LE(history.Bytes(), CDocumentHistory::kByteBudget);
    // The figure the budget was sized by: a whole device's records, both ways.
    EXPECT_LT(history.Bytes() / history.StepCount(), std::size_t{160} << 10);
    for (int step = 0; step < 100; ++step)
        ASSERT_TRUE(history.Undo());
    EXPECT_EQ(DumpOf(memory), full.dump);
}

} // namespace
} // namespace tarvix::testing
