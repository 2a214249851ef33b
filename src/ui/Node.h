#pragma once

#include <cstdint>

namespace tarvix {

// What a tree item stands for. The values are those of `CurrentNode`'s low
// half; None is an empty selection.
enum class NodeKind : std::uint16_t { None = 0, AllParts = 1, Part = 2, AllSongs = 3, Song = 4 };

struct Node {
    NodeKind kind = NodeKind::None;
    int index = 0; // part or song number for Part and Song, else 0

    friend bool operator==(const Node&, const Node&) = default;
};

// The 32-bit node value: kind in the low 16 bits, index in the high 16.
inline std::uint32_t ToNodeValue(Node node)
{
    return static_cast<std::uint32_t>(node.kind) |
           (static_cast<std::uint32_t>(node.index & 0xFFFF) << 16);
}

inline Node FromNodeValue(std::uint32_t value)
{
    return {static_cast<NodeKind>(value & 0xFFFFu), static_cast<int>(value >> 16)};
}

} // namespace tarvix
