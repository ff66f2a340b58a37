#include "app/artwork/tree.h"

#include "app/artwork/art_kinds.h"
#include "app/artwork/error.h"

#include <limits>

namespace corvane {

namespace {

constexpr int useShift = 24;
constexpr std::uint8_t lastUse = std::numeric_limits<std::uint8_t>::max();

} // namespace

Tree::Tree(ArtworkBudget& budget) : nodes_(budget) {
    nodes_.resize(1);
    nodes_[0] = {};
}

NodeIndex Tree::find(Art art) const {
    const auto number = static_cast<std::uint32_t>(art);
    const NodeIndex index = number & (mostNodes - 1);
    if (index >= nodes_.size() || nodes_[index].kind == ArtKind::unknown ||
        nodes_[index].use != number >> useShift) {
        throw ArtworkError("there is no such art");
    }
    return index;
}

NodeIndex Tree::find(Art art, ArtKind kind) const {
    const NodeIndex index = find(art);
    if (nodes_[index].kind != kind) {
        throw ArtworkError("the art is of another kind");
    }
    return index;
}

Art Tree::handle(NodeIndex index) const {
    return index == 0 ? Art::null
                      : static_cast<Art>(std::uint32_t{nodes_[index].use} << useShift | index);
}

NodeIndex Tree::allocate(ArtKind kind) {
    NodeIndex index = firstFree_;
    std::uint8_t use = 1;
    if (index != 0) {
        firstFree_ = nodes_[index].next;
        use = static_cast<std::uint8_t>(nodes_[index].use + 1);
    } else {
        if (nodes_.size() == mostNodes) {
            throw ArtworkError("there are more pieces of art than handles");
        }
        index = static_cast<NodeIndex>(nodes_.size());
        nodes_.resize(nodes_.size() + 1);
    }
    nodes_[index] = {};
    nodes_[index].kind = kind;
    nodes_[index].use = use;
    return index;
}

void Tree::free(NodeIndex index) {
    Node& node = nodes_[index];
    node.kind = ArtKind::unknown;
    if (node.use != lastUse) {
        node.next = firstFree_;
        firstFree_ = index;
    }
}

NodeIndex Tree::parentAt(ArtKind kind, Placement placement, NodeIndex reference) const {
    NodeIndex parent = 0;
    switch (placement) {
    case Placement::inFront:
    case Placement::behind:
        parent = nodes_[reference].parent;
        break;
    case Placement::inside:
        parent = reference;
        break;
    default:
        throw ArtworkError("there is no such placement");
    }
    if (parent == 0) {
        throw ArtworkError("nothing goes beside a layer's own group, or beside one in no layer");
    }
    if (!canHold(nodes_[parent].kind, kind)) {
        throw ArtworkError("the art does not go into art of that kind");
    }
    if (nodes_[parent].depth >= artworkNesting) {
        throw ArtworkError("the art is nested too deeply");
    }
    return parent;
}

void Tree::checkDepths(NodeIndex top, std::int32_t depth) const {
    const std::int32_t deeper = depth - nodes_[top].depth;
    if (deeper <= 0) {
        return;
    }
    for (NodeIndex node = top; node != 0; node = following(node, top)) {
        if (nodes_[node].depth + deeper > artworkNesting) {
            throw ArtworkError("the art is nested too deeply");
        }
    }
}

void Tree::link(NodeIndex index, Placement placement, NodeIndex reference) {
    const Node& beside = nodes_[reference];
    switch (placement) {
    case Placement::inFront:
        linkBetween(index, beside.parent, beside.previous, reference);
        break;
    case Placement::behind:
        linkBetween(index, beside.parent, reference, beside.next);
        break;
    case Placement::inside:
        linkBetween(index, reference, 0, beside.firstChild);
        break;
    }
}

void Tree::linkLast(NodeIndex index, NodeIndex parent) {
    linkBetween(index, parent, nodes_[parent].lastChild, 0);
}

void Tree::linkBetween(NodeIndex index, NodeIndex parent, NodeIndex previous, NodeIndex next) {
    Node& node = nodes_[index];
    node.parent = parent;
    node.previous = previous;
    node.next = next;
    (previous != 0 ? nodes_[previous].next : nodes_[parent].firstChild) = index;
    (next != 0 ? nodes_[next].previous : nodes_[parent].lastChild) = index;
    setDepths(index, nodes_[parent].depth + 1);
}

void Tree::unlink(NodeIndex index) {
    Node& node = nodes_[index];
    (node.previous != 0 ? nodes_[node.previous].next : nodes_[node.parent].firstChild) = node.next;
    (node.next != 0 ? nodes_[node.next].previous : nodes_[node.parent].lastChild) = node.previous;
    node.parent = node.previous = node.next = 0;
}

bool Tree::isWithin(NodeIndex node, NodeIndex ancestor) const {
    while (nodes_[node].depth > nodes_[ancestor].depth) {
        node = nodes_[node].parent;
    }
    return node == ancestor;
}

NodeIndex Tree::following(NodeIndex node, NodeIndex top) const {
    if (nodes_[node].firstChild != 0) {
        return nodes_[node].firstChild;
    }
    while (node != top && nodes_[node].next == 0) {
        node = nodes_[node].parent;
    }
    return node == top ? 0 : nodes_[node].next;
}

void Tree::setDepths(NodeIndex top, std::int32_t depth) {
    const std::int32_t deeper = depth - nodes_[top].depth;
    if (deeper == 0) {
        return;
    }
    for (NodeIndex node = top; node != 0; node = following(node, top)) {
        nodes_[node].depth = static_cast<std::uint16_t>(nodes_[node].depth + deeper);
    }
}

} // namespace corvane
