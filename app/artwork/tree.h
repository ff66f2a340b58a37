// The nodes of a document's art: their handles, and the links between them.
//
// A node's handle holds its place in the table (low 24 bits) and how often that place was used
// before (high 8 bits). A place is not used again when that number is at its highest, so no two
// pieces of art of a document ever have the same handle.
#pragma once

#include "app/artwork/budget.h"
#include "app/artwork/storage/chunks.h"
#include "app/artwork/storage/segments.h"
#include "host/artwork.h"

#include <cstddef>
#include <cstdint>

namespace corvane {

/// Place of a node in the table; 0 is none.
using NodeIndex = std::uint32_t;

struct Node {
    NodeIndex parent = 0;
    NodeIndex previous = 0; ///< sibling in front
    NodeIndex next = 0;     ///< sibling behind; of a free node: the next free one
    NodeIndex firstChild = 0;
    NodeIndex lastChild = 0;
    // Of a path. They stand here because nearly all art is paths; fields that few nodes have are in
    // side tables (side_table.h).
    SegmentRun segments;
    std::uint32_t style = 0;         ///< its number in the style table
    ArtKind kind = ArtKind::unknown; ///< unknown: the node is free
    std::uint16_t depth = 0;         ///< 1 for a layer's own group
    std::uint8_t use = 0;            ///< from 1
    bool clipped : 1 = false;        ///< a group
    bool closed : 1 = false;         ///< a path, as is the next
    bool guide : 1 = false;
};
static_assert(sizeof(Node) == 44);

class Tree {
public:
    static constexpr std::size_t mostNodes = std::size_t{1} << 24;

    explicit Tree(ArtworkBudget& budget);

    /// The node that a handle names. Throws `ArtworkError` where it names none.
    NodeIndex find(Art) const;
    /// The same for a node that must be of one kind.
    NodeIndex find(Art, ArtKind) const;
    Art handle(NodeIndex) const;

    Node& operator[](NodeIndex index) { return nodes_[index]; }
    const Node& operator[](NodeIndex index) const { return nodes_[index]; }
    std::size_t size() const { return nodes_.size(); } ///< places, used and free, and place 0

    /// A node that is linked to nothing. Throws `ArtworkError` past the budget.
    NodeIndex allocate(ArtKind);
    /// Frees a node that is linked to nothing.
    void free(NodeIndex);

    /// The parent that art of `kind` gets there. Throws `ArtworkError` where it cannot be there:
    /// the reference has no parent, or takes no such art, or is as deep as art may be.
    NodeIndex parentAt(ArtKind kind, Placement, NodeIndex reference) const;
    /// Throws `ArtworkError` where `top`, were it at `depth`, would hold art deeper than allowed.
    void checkDepths(NodeIndex top, std::int32_t depth) const;

    /// Links a node that has no parent, where `parentAt` and `checkDepths` allow it.
    void link(NodeIndex, Placement, NodeIndex reference);
    void linkLast(NodeIndex, NodeIndex parent);
    void unlink(NodeIndex);

    bool isWithin(NodeIndex node, NodeIndex ancestor) const;

    /// All nodes from `top` down, each before what it holds: the one after `node`, 0 after the
    /// last.
    NodeIndex following(NodeIndex node, NodeIndex top) const;

private:
    void linkBetween(NodeIndex, NodeIndex parent, NodeIndex previous, NodeIndex next);
    void setDepths(NodeIndex top, std::int32_t depth);

    Chunks<Node> nodes_;
    NodeIndex firstFree_ = 0;
};

} // namespace corvane
