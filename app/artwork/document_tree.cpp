// Changes of the art tree: making, moving, copying, disposing.
#include "app/artwork/document.h"

#include "app/artwork/art_kinds.h"

namespace corvane {

Art Document::make(ArtKind kind, Placement placement, Art reference) {
    if (!artTraits(kind).known) {
        throw ArtworkError("art of that kind cannot be made");
    }
    const NodeIndex beside = tree_.find(reference);
    tree_.parentAt(kind, placement, beside);
    const NodeIndex made = tree_.allocate(kind);
    tree_.link(made, placement, beside);
    return tree_.handle(made);
}

void Document::dispose(Art art) {
    const NodeIndex node = findMovable(art);
    tree_.unlink(node);
    freeTree(node);
    reclaimSegments();
}

void Document::reorder(Art art, Placement placement, Art reference) {
    const NodeIndex node = findMovable(art);
    const NodeIndex beside = tree_.find(reference);
    const NodeIndex parent = tree_.parentAt(tree_[node].kind, placement, beside);
    if (beside == node || tree_.isWithin(parent, node)) {
        throw ArtworkError("art cannot go into or beside itself");
    }
    tree_.checkDepths(node, tree_[parent].depth + 1);
    checkPatternsAt(node, parent);
    tree_.unlink(node);
    tree_.link(node, placement, beside);
}

Art Document::duplicate(Art art, Placement placement, Art reference) {
    const NodeIndex node = tree_.find(art);
    const NodeIndex beside = tree_.find(reference);
    const NodeIndex parent = tree_.parentAt(tree_[node].kind, placement, beside);
    tree_.checkDepths(node, tree_[parent].depth + 1);
    checkPatternsAt(node, parent);
    const NodeIndex copy = tree_.allocate(tree_[node].kind);
    try {
        copyProperties(node, copy);
        copyBelow(node, copy);
    } catch (...) {
        freeTree(copy);
        throw;
    }
    tree_.link(copy, placement, beside);
    return tree_.handle(copy);
}

NodeIndex Document::findMovable(Art art) const {
    const NodeIndex node = tree_.find(art);
    if (tree_[node].parent == 0) {
        throw ArtworkError("a layer's own group, or one in no layer, stays where it is");
    }
    return node;
}

void Document::copyProperties(NodeIndex from, NodeIndex to) {
    const Node& original = tree_[from];
    Node& copy = tree_[to];
    copy.style = original.style;
    copy.clipped = original.clipped;
    copy.closed = original.closed;
    copy.guide = original.guide;
    copy.segments = segments_.copy(original.segments);
    sources_.copy(from, to);
    appearances_.copy(from, to);
    forms_.copy(from, to);
    groupLayers_.copy(from, to);
    texts_.copy(from, to);
    placed_.copy(from, to);
}

/// Copies all that `from` holds into `to`, which holds nothing yet.
void Document::copyBelow(NodeIndex from, NodeIndex to) {
    const NodeIndex top = from;
    for (NodeIndex node = tree_.following(top, top); node != 0; node = tree_.following(node, top)) {
        // `from` and `to` stand at the node met before: climb until its parent's copy is reached.
        for (; from != tree_[node].parent; from = tree_[from].parent) {
            to = tree_[to].parent;
        }
        const NodeIndex copy = tree_.allocate(tree_[node].kind);
        tree_.linkLast(copy, to);
        copyProperties(node, copy);
        from = node;
        to = copy;
    }
}

/// With all that side tables hold for it.
void Document::freeNode(NodeIndex node) {
    segments_.release(tree_[node].segments);
    sources_.erase(node);
    appearances_.erase(node);
    forms_.erase(node);
    groupLayers_.erase(node);
    texts_.erase(node);
    placed_.erase(node);
    artworks_.erase(node);
    tree_.free(node);
}

/// Of a node without parent: from the leaves upwards.
void Document::freeTree(NodeIndex top) {
    NodeIndex node = top;
    while (true) {
        if (tree_[node].firstChild != 0) {
            node = tree_[node].firstChild;
            continue;
        }
        const NodeIndex parent = tree_[node].parent;
        const NodeIndex next = tree_[node].next;
        freeNode(node);
        if (node == top) {
            return;
        }
        if (next == 0) {
            tree_[parent].firstChild = 0;
        }
        node = next != 0 ? next : parent;
    }
}

} // namespace corvane
