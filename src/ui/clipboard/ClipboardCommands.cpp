#include "ui/clipboard/ClipboardCommands.h"

#include "framework/MessageBox.h"
#include "model/ClipboardBlock.h"
#include "model/Mmt8Memory.h"
#include "ui/MainFrame.h"
#include "ui/TreePane.h"
#include "ui/clipboard/ClipboardFormats.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMimeData>

#include <algorithm>
#include <numeric>
#include <optional>
#include <span>
#include <vector>

namespace tarvix {

namespace {

std::vector<int> AllSlots(int count)
{
    std::vector<int> numbers(static_cast<std::size_t>(count));
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

// What a copy in the tree takes: every part or song under a root, or the
// node's own.
std::vector<int> TreeItems(Node node)
{
    switch (node.kind) {
    case NodeKind::AllParts: return AllSlots(kPartCount);
    case NodeKind::AllSongs: return AllSlots(kSongCount);
    case NodeKind::Part:
    case NodeKind::Song: return {node.index};
    case NodeKind::None: break;
    }
    return {};
}

// Where a paste starts: the first selected row (step 0 in a step list with
// none selected), the root's first slot or the node's own.
std::optional<int> StartSlot(const PaneCommandContext& context)
{
    if (context.pane == Pane::Tree) {
        const bool root =
            context.node.kind == NodeKind::AllParts || context.node.kind == NodeKind::AllSongs;
        return root ? 0 : context.node.index;
    }
    if (!context.selectedRows.empty())
        return *std::min_element(context.selectedRows.begin(), context.selectedRows.end());
    if (context.node.kind == NodeKind::Song)
        return 0;
    return std::nullopt;
}

} // namespace

CClipboardCommands::CClipboardCommands(CMmt8Memory& memory, CMainFrame& frame)
    : m_memory(memory), m_frame(frame)
{
}

void CClipboardCommands::Execute(CommandId id, const PaneCommandContext& context)
{
    if (QLineEdit* editor = context.pane == Pane::Tree ? LabelEditor() : nullptr) {
        if (id == kCmdCopy)
            editor->copy();
        else
            editor->paste();
        return;
    }
    if (id == kCmdCopy)
        Copy(context);
    else if (id == kCmdPaste)
        Paste(context);
}

bool CClipboardCommands::HasRecords(Pane pane, NodeKind kind)
{
    const std::optional<ClipboardKind> records = ClipboardKindFor(pane, kind);
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    return records && data && data->hasFormat(ClipboardMimeType(*records));
}

void CClipboardCommands::Copy(const PaneCommandContext& context)
{
    const std::optional<ClipboardKind> kind = ClipboardKindFor(context.pane, context.node.kind);
    if (!kind)
        return;
    std::vector<int> items =
        context.pane == Pane::Tree ? TreeItems(context.node) : context.selectedRows;
    if (items.empty())
        return;
    std::sort(items.begin(), items.end());
    const int owner = context.pane == Pane::List ? context.node.index : 0;
    const std::vector<std::uint8_t> block = WriteClipboardBlock(m_memory, *kind, owner, items);
    auto* data = new QMimeData;
    data->setData(ClipboardMimeType(*kind), QByteArray(reinterpret_cast<const char*>(block.data()),
                                                       static_cast<qsizetype>(block.size())));
    QGuiApplication::clipboard()->setMimeData(data);
}

void CClipboardCommands::Paste(const PaneCommandContext& context)
{
    const std::optional<ClipboardKind> kind = ClipboardKindFor(context.pane, context.node.kind);
    const std::optional<int> start = StartSlot(context);
    if (!kind || !start)
        return;
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    const QString type = ClipboardMimeType(*kind);
    if (!data || !data->hasFormat(type))
        return;
    const QByteArray bytes = data->data(type);
    ClipboardRecords records;
    std::string error;
    if (!ReadClipboardBlock({reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                             static_cast<std::size_t>(bytes.size())},
                            *kind, records, error)) {
        CMessageBox::Report(&m_frame, QString::fromStdString(error));
        return;
    }
    const int owner = context.pane == Pane::List ? context.node.index : 0;
    PasteClipboardRecords(m_memory, records, owner, *start);
    // Even a block whose records all fell beyond the last slot counts as a
    // change.
    m_memory.modified = 1;
    m_frame.RefreshViews();
}

QLineEdit* CClipboardCommands::LabelEditor() const
{
    CTreePane& tree = m_frame.Tree();
    if (!tree.IsEditingLabel())
        return nullptr;
    return qobject_cast<QLineEdit*>(tree.indexWidget(tree.currentIndex()));
}

} // namespace tarvix
