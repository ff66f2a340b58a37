// Paths of the artwork: flags, styles and segments.
#include "app/artwork/document.h"

#include <new>
#include <vector>

namespace corvane {

namespace {

void checkRange(const Node& path, std::int32_t first, std::size_t count) {
    const auto segments = static_cast<std::size_t>(path.segments.count);
    if (first < 0 || static_cast<std::size_t>(first) > segments ||
        count > segments - static_cast<std::size_t>(first)) {
        throw ArtworkError("the path has no such segments");
    }
}

} // namespace

bool Document::closed(Art path) const {
    return tree_[tree_.find(path, ArtKind::path)].closed;
}

void Document::setClosed(Art path, bool closed) {
    tree_[tree_.find(path, ArtKind::path)].closed = closed;
}

bool Document::guide(Art path) const {
    return tree_[tree_.find(path, ArtKind::path)].guide;
}

void Document::setGuide(Art path, bool guide) {
    tree_[tree_.find(path, ArtKind::path)].guide = guide;
}

const PathStyle& Document::style(Art path) const {
    return styles_[tree_[tree_.find(path, ArtKind::path)].style];
}

void Document::setStyle(Art path, const PathStyle& style) {
    const NodeIndex node = tree_.find(path, ArtKind::path);
    checkStyle(node, style);
    tree_[node].style = styles_.add(style);
}

Segments Document::segments(Art path) const {
    return segments_.view(tree_[tree_.find(path, ArtKind::path)].segments);
}

void Document::setSegmentCount(Art path, std::int32_t count) {
    const NodeIndex node = tree_.find(path, ArtKind::path);
    if (count < 0) {
        throw ArtworkError("a path cannot have less than no segments");
    }
    segments_.setCount(tree_[node].segments, count);
    reclaimSegments();
}

void Document::readSegments(Art path, std::int32_t first, std::span<Segment> into) const {
    const Node& node = tree_[tree_.find(path, ArtKind::path)];
    checkRange(node, first, into.size());
    segments_.read(node.segments, first, into);
}

void Document::writeSegments(Art path, std::int32_t first, std::span<const Segment> segments) {
    Node& node = tree_[tree_.find(path, ArtKind::path)];
    checkRange(node, first, segments.size());
    segments_.write(node.segments, first, segments);
    reclaimSegments();
}

void Document::reclaimSegments() {
    if (!segments_.wasteful()) {
        return;
    }
    std::vector<SegmentRun*> runs;
    try {
        for (NodeIndex node = 1; node < tree_.size(); ++node) {
            if (tree_[node].segments.room != 0) {
                runs.push_back(&tree_[node].segments);
            }
        }
    } catch (const std::bad_alloc&) {
        return; // the waste waits for better times
    }
    segments_.compact(runs);
}

} // namespace corvane
