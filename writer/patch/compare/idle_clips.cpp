#include "writer/patch/compare/idle_clips.h"

#include "writer/art/outline.h"

#include <optional>
#include <utility>
#include <vector>

namespace corvane {

namespace {

/// For each group of the list: the rectangle that clips it, where one does.
using Rectangles = std::vector<std::optional<ArtExtent>>;

/// Groups around the part at hand, by their place in the list.
class OpenGroups {
public:
    explicit OpenGroups(const ChargedList<SeenPart>& parts) : parts_(parts) {}

    /// Calls `close` for each group that ends in front of a part of that depth.
    template <class Close>
    void closeDownTo(std::size_t depth, const Close& close) {
        while (!open_.empty() && parts_[open_.back()].depth >= depth) {
            const std::size_t closed = open_.back();
            open_.pop_back();
            close(closed);
        }
    }
    void open(std::size_t group) { open_.push_back(group); }
    bool any() const { return !open_.empty(); }
    std::size_t innermost() const { return open_.back(); }

private:
    const ChargedList<SeenPart>& parts_;
    std::vector<std::size_t> open_;
};

/// Calls `open` for a group, `visit` for another part and the group around it, and `close`.
template <class Open, class Visit, class Close>
void forEachPart(const ChargedList<SeenPart>& parts, const Open& open, const Visit& visit,
                 const Close& close) {
    OpenGroups groups(parts);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto closeGroup = [&](std::size_t group) { close(group, groups); };
        groups.closeDownTo(parts[i].depth, closeGroup);
        if (parts[i].kind == ArtKind::group) {
            open(i, groups);
            groups.open(i);
        } else if (groups.any()) {
            visit(i, groups.innermost());
        }
    }
    groups.closeDownTo(0, [&](std::size_t group) { close(group, groups); });
}

bool isPainted(const SeenPart& part) {
    if (part.kind != ArtKind::path && part.kind != ArtKind::compound) {
        return true;
    }
    const PathStyle style = leadingStyle(part.art);
    return style.fillPaint != 0 || style.strokePaint != 0;
}

bool hasArea(const ArtExtent& extent) {
    return extent.left < extent.right && extent.bottom < extent.top;
}

Rectangles rectanglesOf(const ChargedList<SeenPart>& parts) {
    Rectangles rectangles(parts.size());
    forEachPart(
        parts, [](std::size_t, const OpenGroups&) {},
        [&](std::size_t part, std::size_t group) {
            if (parts[part].isClip) {
                rectangles[group] = rectangleOf(parts[part].art);
            }
        },
        [](std::size_t, const OpenGroups&) {});
    return rectangles;
}

/// Which groups have a clip that cuts nothing.
std::vector<bool> findIdle(const ChargedList<SeenPart>& parts, const ArtExtent& visible) {
    const Rectangles clips = rectanglesOf(parts);
    std::vector<bool> isIdle(parts.size());
    std::vector<ArtExtent> content(parts.size());       // of a group, as far as it clips that
    std::vector<ArtExtent> seen(parts.size(), visible); // around a group
    const auto cut = [&](std::size_t group, const ArtExtent& extent) {
        return clips[group] ? extent.within(*clips[group]) : extent;
    };
    forEachPart(
        parts,
        [&](std::size_t group, const OpenGroups& around) {
            if (around.any()) {
                seen[group] = cut(around.innermost(), seen[around.innermost()]);
            }
        },
        [&](std::size_t part, std::size_t group) {
            if (!parts[part].isClip && isPainted(parts[part])) {
                content[group].add(extentOf(parts[part].art));
            }
        },
        [&](std::size_t group, const OpenGroups& around) {
            isIdle[group] = clips[group] && hasArea(*clips[group]) &&
                            clips[group]->contains(content[group].within(seen[group]));
            if (around.any()) {
                content[around.innermost()].add(cut(group, content[group]));
            }
        });
    return isIdle;
}

} // namespace

ChargedList<SeenPart> withoutIdleClips(const ChargedList<SeenPart>& parts,
                                       const ArtExtent& visible) {
    const std::vector<bool> isIdle = findIdle(parts, visible);
    ChargedList<SeenPart> kept;
    std::size_t dropped = 0; // groups around the part at hand that are gone
    const auto isDropped = [&](std::size_t group) {
        return isIdle[group] && parts[group].appearance == Appearance();
    };
    const auto keep = [&](std::size_t i, bool isClipped) {
        SeenPart part = parts[i];
        part.isClipped = isClipped;
        part.depth -= dropped;
        kept.push(part);
    };
    OpenGroups groups(parts);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        groups.closeDownTo(parts[i].depth,
                           [&](std::size_t group) { dropped -= isDropped(group) ? 1 : 0; });
        if (parts[i].kind != ArtKind::group) {
            if (!groups.any() || !parts[i].isClip || !isIdle[groups.innermost()]) {
                keep(i, parts[i].isClipped);
            }
            continue;
        }
        if (isDropped(i)) {
            ++dropped;
        } else {
            keep(i, parts[i].isClipped && !isIdle[i]);
        }
        groups.open(i);
    }
    return kept;
}

} // namespace corvane
