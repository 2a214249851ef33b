#pragma once

#include "ui/undo/DocumentRecords.h"

#include <cstddef>
#include <deque>
#include <functional>

namespace tarvix {

class CMmt8Memory;

// How a kind of change is named and what it does to the modified flag.
struct UndoStepKind {
    const char* name;          // "Undo %s" in the Edit menu
    bool marksModified = true; // false: the change alone leaves the flag alone
    bool leavesClean = false;  // true: the document counts as unmodified after it
};

// The undo and redo history of the document. Every change runs through
// Record, which compares the document's records before and after it and
// keeps only the records that changed, both ways; undo and redo put them
// back. No command writes its own inverse.
//
// Memory: the steps together hold at most kByteBudget bytes of records; the
// oldest steps go first when a new one would pass it, and a single step
// larger than the budget is kept alone. A step of a document that fits the
// device holds under 160 KB (its records before and after), so at least 100
// steps always fit; kStepLimit bounds the bookkeeping of many tiny steps.
//
// QUndoStack would do the bookkeeping but can only be bounded by a count of
// steps, not by the bytes they hold.
class CDocumentHistory {
public:
    static constexpr std::size_t kByteBudget = std::size_t{32} << 20;
    static constexpr std::size_t kStepLimit = 1000;

    explicit CDocumentHistory(CMmt8Memory& memory, std::size_t byteBudget = kByteBudget);

    // Runs change and records what it did as one step. A change made inside
    // another one's change belongs to the outer step. Nothing is recorded
    // when the document did not change (a cancelled dialog, a failed load).
    void Record(const UndoStepKind& kind, const std::function<void()>& change);

    // Put the records of the step before or after the current point in
    // place and set the modified flag: clear when back at the last save,
    // set when a step that marks the document lies between.
    bool Undo();
    bool Redo();
    bool CanUndo() const { return m_current > 0; }
    bool CanRedo() const { return m_current < m_steps.size(); }
    // The step Undo or Redo would take; null when there is none.
    const char* UndoName() const;
    const char* RedoName() const;

    // The document as it is now matches its file (after Save, Init).
    void MarkClean();
    // Forgets every step; the document as it is now is clean (after Open).
    void Clear();

    std::size_t StepCount() const { return m_steps.size(); }
    std::size_t Bytes() const { return m_bytes; }

private:
    struct ChangedRecord {
        std::size_t record;
        RecordBytes before;
        RecordBytes after;
    };
    struct Step {
        const UndoStepKind* kind;
        std::vector<ChangedRecord> records;
        std::size_t bytes = 0;
    };

    void Push(Step step);
    void DropOldest();
    void ApplyModifiedFlag();

    CMmt8Memory& m_memory;
    std::size_t m_byteBudget;
    std::deque<Step> m_steps;
    std::size_t m_current = 0;  // steps before it are done, from it on undone
    std::ptrdiff_t m_clean = 0; // the point that matches the file; -1 when lost
    std::size_t m_bytes = 0;
    int m_depth = 0;
};

} // namespace tarvix
