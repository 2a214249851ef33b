#include "ui/undo/DocumentHistory.h"

#include "model/Mmt8Memory.h"

#include <algorithm>

namespace tarvix {

CDocumentHistory::CDocumentHistory(CMmt8Memory& memory, std::size_t byteBudget)
    : m_memory(memory), m_byteBudget(byteBudget)
{
}

void CDocumentHistory::Record(const UndoStepKind& kind, const std::function<void()>& change)
{
    if (m_depth > 0) {
        change();
        return;
    }
    const DocumentRecords before = TakeRecords(m_memory);
    {
        struct Depth {
            int& depth;
            explicit Depth(int& d) : depth(++d) {}
            ~Depth() { --depth; }
        } depth(m_depth);
        change();
    }
    DocumentRecords after = TakeRecords(m_memory);
    Step step{&kind, {}, 0};
    for (std::size_t record = 0; record < before.size(); ++record) {
        if (before[record] == after[record])
            continue;
        step.bytes += before[record].size() + after[record].size();
        step.records.push_back({record, before[record], std::move(after[record])});
    }
    if (!step.records.empty())
        Push(std::move(step));
    // Unless the change was given up (a question cancelled) and left the
    // document modified.
    if (kind.leavesClean && m_memory.modified == 0)
        MarkClean();
}

void CDocumentHistory::Push(Step step)
{
    // What was undone is gone for good, and with it a clean point there.
    while (m_steps.size() > m_current) {
        m_bytes -= m_steps.back().bytes;
        m_steps.pop_back();
    }
    if (m_clean > static_cast<std::ptrdiff_t>(m_current))
        m_clean = -1;
    m_bytes += step.bytes;
    m_steps.push_back(std::move(step));
    ++m_current;
    while (m_steps.size() > 1 && (m_bytes > m_byteBudget || m_steps.size() > kStepLimit))
        DropOldest();
}

void CDocumentHistory::DropOldest()
{
    m_bytes -= m_steps.front().bytes;
    m_steps.pop_front();
    --m_current;
    // A clean point at the dropped step's start can no longer be reached.
    m_clean = m_clean > 0 ? m_clean - 1 : -1;
}

bool CDocumentHistory::Undo()
{
    if (!CanUndo())
        return false;
    --m_current;
    for (const ChangedRecord& changed : m_steps[m_current].records)
        RestoreRecord(m_memory, changed.record, changed.before);
    ApplyModifiedFlag();
    return true;
}

bool CDocumentHistory::Redo()
{
    if (!CanRedo())
        return false;
    for (const ChangedRecord& changed : m_steps[m_current].records)
        RestoreRecord(m_memory, changed.record, changed.after);
    ++m_current;
    ApplyModifiedFlag();
    return true;
}

void CDocumentHistory::ApplyModifiedFlag()
{
    bool marked = m_clean < 0;
    if (!marked) {
        const auto clean = static_cast<std::size_t>(m_clean);
        const std::size_t from = std::min(clean, m_current);
        const std::size_t to = std::max(clean, m_current);
        for (std::size_t step = from; step < to && !marked; ++step)
            marked = m_steps[step].kind->marksModified;
    }
    m_memory.modified = marked ? 1 : 0;
}

const char* CDocumentHistory::UndoName() const
{
    return CanUndo() ? m_steps[m_current - 1].kind->name : nullptr;
}

const char* CDocumentHistory::RedoName() const
{
    return CanRedo() ? m_steps[m_current].kind->name : nullptr;
}

void CDocumentHistory::MarkClean()
{
    m_clean = static_cast<std::ptrdiff_t>(m_current);
}

void CDocumentHistory::Clear()
{
    m_steps.clear();
    m_current = 0;
    m_clean = 0;
    m_bytes = 0;
}

} // namespace tarvix
