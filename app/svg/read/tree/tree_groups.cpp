// Groups of the art, the clips that they have, and where new art goes.
#include "app/artwork/geometry/path_walk.h"
#include "app/svg/read/tree/tree_reader.h"

#include "app/svg/read/path_reader.h"
#include "app/svg/read/values/user_box.h"
#include "app/svg/shape_extent.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

ArtPlace placeBehind(Art group, Art clip) {
    return clip == Art::null ? ArtPlace{Placement::inside, group}
                             : ArtPlace{Placement::behind, clip};
}

} // namespace

// Groups and their clips

/// Makes a group for the frame, and one more for each further clip of its clip. `outermost` is the
/// first, or null to make one.
void TreeReader::openGroups(Frame& frame, Art outermost) {
    const std::vector<pugi::xml_node> chain = clips_.chain(frame.style.clipPath);
    frame.look = lookOf(frame.style, frame.matrix, frame.viewport);
    frame.boxed = frame.boxed || masks_.fitsBox(frame.look.mask);
    const std::size_t count = std::max<std::size_t>(1, chain.size());
    for (std::size_t i = 0; i < count; ++i) {
        if (i == 0 && outermost != Art::null) {
            frame.group = frame.outermost = outermost;
        } else {
            const ArtPlace place =
                i == 0 ? placeIn(frames_.back()) : placeBehind(frame.group, frame.clip);
            frame.group = document_.make(ArtKind::group, place.placement, place.reference);
            frame.made = i == 0 ? frame.group : frame.made;
            frame.outermost = frame.made;
        }
        frame.clip = Art::null;
        if (i == chain.size()) {
            break;
        }
        if (ClipReader::fitsBox(chain[i])) {
            frame.boxClips.push_back({frame.group, chain[i]});
            frame.boxed = true;
            continue;
        }
        frame.clip = clips_.clip(frame.group, chain[i], frame.matrix, frame.viewport);
        const Extent bounds = clipShape(document_, frame.clip).bounds;
        frame.visible = frame.visible.within(bounds);
        frame.clipBounds = frame.clipBounds.within(bounds);
    }
    if (frame.late.kind != LateClip::Kind::none && !chain.empty()) {
        const ArtPlace place = placeBehind(frame.group, frame.clip);
        frame.group = document_.make(ArtKind::group, place.placement, place.reference);
        frame.clip = Art::null;
    }
}

bool TreeReader::holdsNothing(const Frame& frame) const {
    return frame.made != Art::null && document_.lastChild(frame.group) == frame.clip;
}

/// The box is known in the art. Where its user space is turned, that is as near as it gets.
void TreeReader::makeBoxClips(Frame& frame) {
    if (frame.boxClips.empty()) {
        return;
    }
    const RealMatrix& matrix = frame.matrix;
    if (matrix.b != 0 || matrix.c != 0 || matrix.a < 0 || matrix.d > 0) {
        context_.tally.add("clip-path");
    }
    const RealMatrix turned{1, 0, 0, -1, 0, 0};
    for (const BoxClip& clip : frame.boxClips) {
        clips_.clip(clip.group, clip.clip, turned, frame.viewport, boxThrough(turned, frame.box));
    }
}

Art TreeReader::drawLateClip(const Frame& frame) {
    const LateClip& late = frame.late;
    PathStyle style;
    style.clip = 1;
    style.rule = late.rule;
    shape_.begin({Placement::inside, frame.group}, late.matrix, context_.ours, false);
    if (late.kind == LateClip::Kind::unseen) {
        if (!readPathData(late.data, shape_)) {
            context_.tally.add("path data");
        }
    } else {
        shape_.moveTo(late.box.left, late.box.top);
        shape_.lineTo(late.box.right, late.box.top);
        shape_.lineTo(late.box.right, late.box.bottom);
        shape_.lineTo(late.box.left, late.box.bottom);
        shape_.close(false);
    }
    const Art clip = shape_.finish(false);
    forEachPath(document_, clip, [&](Art path) { document_.setStyle(path, style); });
    setSource(clip, late.source);
    return clip;
}

/// A clip that the writer left undrawn because it cuts nothing is dropped where it would cut now; a
/// viewport is a clip only where it cuts.
void TreeReader::makeLateClip(Frame& frame) {
    if (frame.late.kind == LateClip::Kind::none) {
        return;
    }
    const Art clip = drawLateClip(frame);
    const ClipShape shape = clipShape(document_, clip);
    const bool cuts =
        !shape.rectangle || !shape.bounds.contains(frame.content.within(frame.visible));
    if (cuts != (frame.late.kind == LateClip::Kind::viewport)) {
        document_.dispose(clip);
        return;
    }
    document_.setClipped(frame.group, true);
    frame.clipBounds = frame.clipBounds.within(shape.bounds);
}

// Where art goes

ArtPlace TreeReader::placeIn(const Frame& frame) {
    return frame.group == Art::null ? ArtPlace{Placement::inside, layers_.loose()}
                                    : placeBehind(frame.group, frame.clip);
}

/// Takes leave of the groups of shared clips but the first `kept`.
void TreeReader::closeShared(Frame& frame, std::size_t kept) {
    while (frame.shared.size() > kept) {
        const SharedClip& last = frame.shared.back();
        if (document_.lastChild(last.group) == last.art) {
            document_.dispose(last.group);
        }
        frame.shared.pop_back();
    }
}

SharedClip TreeReader::makeShared(ArtPlace place, pugi::xml_node clip, const RealMatrix& matrix) {
    SharedClip shared;
    shared.clip = clip;
    shared.matrix = matrix;
    shared.group = document_.make(ArtKind::group, place.placement, place.reference);
    shared.art = clips_.clip(shared.group, clip, matrix, frames_.back().viewport);
    const ClipShape shape = clipShape(document_, shared.art);
    shared.bounds = shape.bounds;
    shared.rectangle = shape.rectangle;
    return shared;
}

/// Where a shape goes that names clips itself: into the groups of the shape before it as far as
/// their clips are the same. A rectangle goes into another around it, since files of ours cut
/// rectangles within one another down to one.
ArtPlace TreeReader::placeClipped(const std::vector<pugi::xml_node>& chain,
                                  const RealMatrix& matrix) {
    Frame& frame = frames_.back();
    std::vector<SharedClip>& open = frame.shared;
    std::size_t kept = 0;
    while (kept < open.size() && kept < chain.size() && open[kept].clip == chain[kept] &&
           open[kept].matrix == matrix) {
        ++kept;
    }
    const auto placeInShared = [&] {
        return open.empty() ? placeIn(frame) : placeBehind(open.back().group, open.back().art);
    };
    std::size_t next = kept;
    if (next < chain.size()) {
        const SharedClip made = makeShared(placeIn(frame), chain[next], matrix);
        if (++next == chain.size() && made.rectangle) {
            while (kept < open.size() && open[kept].rectangle &&
                   open[kept].bounds.contains(made.bounds)) {
                ++kept;
            }
        }
        closeShared(frame, kept);
        if (!open.empty()) {
            const ArtPlace place = placeInShared();
            document_.reorder(made.group, place.placement, place.reference);
        }
        open.push_back(made);
    } else {
        closeShared(frame, kept);
    }
    for (; next < chain.size(); ++next) {
        open.push_back(makeShared(placeInShared(), chain[next], matrix));
    }
    return placeInShared();
}

/// Groups for a shape alone, of which one clip at least fits its box.
ArtPlace TreeReader::openBoxed(const std::vector<pugi::xml_node>& chain, const RealMatrix& matrix,
                               std::vector<BoxClip>& clips) {
    closeShared(frames_.back(), 0);
    ArtPlace place = placeIn(frames_.back());
    for (const pugi::xml_node clip : chain) {
        const Art group = document_.make(ArtKind::group, place.placement, place.reference);
        place = {Placement::inside, group};
        if (ClipReader::fitsBox(clip)) {
            clips.push_back({group, clip});
        } else {
            place = placeBehind(group, clips_.clip(group, clip, matrix, frames_.back().viewport));
        }
    }
    return place;
}

} // namespace corvane
