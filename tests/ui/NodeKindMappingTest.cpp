// A tree node decides which list the right pane shows and which records a
// Copy or Paste moves; both must agree with each other for every node.
#include "ui/ListModel.h"
#include "ui/clipboard/ClipboardFormats.h"

#include <gtest/gtest.h>

namespace tarvix {
namespace {

struct NodeCase {
    NodeKind node;
    std::optional<ListKind> list;
    std::optional<ClipboardKind> inList;
    std::optional<ClipboardKind> inTree;
};

const NodeCase kCases[] = {
    {NodeKind::None, std::nullopt, std::nullopt, std::nullopt},
    {NodeKind::AllParts, ListKind::Parts, ClipboardKind::Parts, ClipboardKind::Parts},
    {NodeKind::Part, ListKind::Tracks, ClipboardKind::Tracks, ClipboardKind::Parts},
    {NodeKind::AllSongs, ListKind::Songs, ClipboardKind::Songs, ClipboardKind::Songs},
    {NodeKind::Song, ListKind::Steps, ClipboardKind::Steps, ClipboardKind::Songs},
};

TEST(NodeKindMappingTest, EachNodeShowsItsListAndCopiesItsRecords)
{
    for (const NodeCase& c : kCases) {
        SCOPED_TRACE(static_cast<int>(c.node));
        EXPECT_EQ(ListKindFor(c.node), c.list);
        EXPECT_EQ(ClipboardKindFor(Pane::List, c.node), c.inList);
        EXPECT_EQ(ClipboardKindFor(Pane::Tree, c.node), c.inTree);
        EXPECT_EQ(ClipboardKindFor(Pane::None, c.node), std::nullopt);
    }
    // A node value from outside the known kinds shows nothing and copies nothing.
    const auto unknown = static_cast<NodeKind>(7);
    EXPECT_EQ(ListKindFor(unknown), std::nullopt);
    EXPECT_EQ(ClipboardKindFor(Pane::List, unknown), std::nullopt);
}

} // namespace
} // namespace tarvix
