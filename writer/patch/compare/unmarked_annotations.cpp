#include "writer/patch/compare/unmarked_annotations.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "writer/art/art_stack.h"
#include "writer/art/layers.h"
#include "writer/patch/compare/content_walk.h"
#include "writer/patch/compare/group_comparison.h"
#include "writer/patch/compare/look.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <vector>

namespace corvane {

namespace {

/// Places that are looked at: a comparison of text takes a few microseconds.
constexpr int mostTried = 50'000;

/// What the artwork says to be an object of the page is no annotation, however alike they look.
bool isOfPage(Art art) {
    ArtSource source;
    callHost(slot::getArtSource, art, &source);
    return source.ordinal >= 0 && source.content == 0;
}

bool isPath(const SeenPart& part) {
    return part.kind == ArtKind::path || (part.kind == ArtKind::compound && !part.isClip);
}

/// All that the artwork draws, as one list in which runs of parts are found.
class DrawnParts {
public:
    DrawnParts() {
        ChargedList<Layer> layers = listLayers();
        while (!layers.empty()) {
            const ChargedList<SeenPart> parts = seenIn(artOf(layers.pop()), extentOfPage());
            for (const SeenPart& part : parts.items()) {
                parts_.push(part);
            }
        }
        for (std::size_t i = 0; i < parts_.size(); ++i) {
            isPath(parts_[i]) ? paths_[lookOf(parts_[i].art).cells(0, 0, 0, 0)].push_back(i)
                              : others_.push_back(i);
        }
        isTaken_.resize(parts_.size());
        for (std::size_t i = 0; i < parts_.size(); ++i) {
            isTaken_[i] = isOfPage(parts_[i].art);
        }
    }

    /// Takes a run that is the same as all of `wanted`.
    bool take(const ChargedList<SeenPart>& wanted, PaintComparison& paints,
              std::unordered_set<Art>& art) {
        const auto at = std::ranges::find_if(wanted.items(), isPath);
        const auto anchor = static_cast<std::size_t>(at - wanted.items().begin());
        const bool hasPath = anchor < wanted.size();
        const auto tryAt = [&](std::size_t place) {
            const std::size_t before = hasPath ? anchor : 0;
            return tried_ < mostTried && ++tried_ != 0 && place >= before &&
                   takeFrom(place - before, wanted, paints, art);
        };
        return hasPath ? std::ranges::any_of(placesLike(wanted[anchor].art), tryAt)
                       : std::ranges::any_of(others_, tryAt);
    }

private:
    /// Paths that begin and end where the other one does.
    std::vector<std::size_t> placesLike(Art path) {
        std::vector<std::size_t> places;
        if (tried_ >= mostTried) {
            return places;
        }
        const Look look = lookOf(path);
        std::unordered_set<LookCells, LookCells::Hash> seen;
        for (unsigned sides = 0; sides < 16; ++sides) {
            const auto step = [&](unsigned bit) {
                return (sides >> bit & 1U) != 0 ? Look::room : -Look::room;
            };
            const LookCells cells = look.cells(step(0), step(1), step(2), step(3));
            const auto found = paths_.find(cells);
            if (found != paths_.end() && seen.insert(cells).second) {
                std::erase_if(found->second, [&](std::size_t place) { return isTaken_[place]; });
                places.insert(places.end(), found->second.begin(), found->second.end());
            }
        }
        return places;
    }

    bool takeFrom(std::size_t start, const ChargedList<SeenPart>& wanted, PaintComparison& paints,
                  std::unordered_set<Art>& art) {
        const std::size_t end = start + wanted.size();
        if (end > parts_.size()) {
            return false;
        }
        const std::size_t depth = parts_[start].depth;
        // A group that holds more is not all of the annotation.
        if (end < parts_.size() && parts_[end].depth > depth) {
            return false;
        }
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            SeenPart part = parts_[start + i];
            if (isTaken_[start + i] || part.depth < depth) {
                return false;
            }
            part.depth -= depth;
            if (!isSamePart(wanted[i], part, paints)) {
                return false;
            }
        }
        for (std::size_t i = start; i < end; ++i) {
            isTaken_[i] = true;
            art.insert(parts_[i].art);
        }
        return true;
    }

    ChargedList<SeenPart> parts_;
    std::unordered_map<LookCells, std::vector<std::size_t>, LookCells::Hash> paths_;
    std::vector<std::size_t> others_;
    std::vector<bool> isTaken_;
    int tried_ = 0;
};

/// Those that the artwork names and has something of.
std::unordered_set<std::int64_t> markedKeys() {
    std::unordered_set<std::int64_t> marked;
    ChargedList<Layer> layers = listLayers();
    while (!layers.empty()) {
        const Layer layer = layers.pop();
        if (roleOf(layer) == LayerRole::annotations) {
            for (const auto& [key, group] : annotationsIn(artOf(layer))) {
                if (firstChild(group) != Art::null) {
                    marked.insert(key);
                }
            }
        }
    }
    return marked;
}

} // namespace

std::int64_t annotationKey(const FormFacts& form) {
    return form.object != 0 ? form.object : -std::int64_t{form.content};
}

Annotations annotationsIn(Art root) {
    Annotations annotations;
    ArtStack pending;
    pending.push(root);
    for (ArtStep step; pending.next(step);) {
        if (step.what != ArtStep::What::art || artKind(step.art) != ArtKind::group) {
            continue;
        }
        if (const FormFacts form = formOf(step.art); form.content != 0) {
            annotations.emplace(annotationKey(form), step.art);
        } else {
            pending.enter(firstChild(step.art), ArtStep::What::end);
        }
    }
    return annotations;
}

UnmarkedAnnotations findUnmarked(const BaseReading& base) {
    UnmarkedAnnotations found;
    if (base.annotations == Art::null) {
        return found;
    }
    Annotations unmarked = annotationsIn(base.annotations);
    for (const std::int64_t key : markedKeys()) {
        unmarked.erase(key);
    }
    if (unmarked.empty()) {
        return found;
    }
    DrawnParts drawn;
    for (const auto& [key, group] : unmarked) {
        const ChargedList<SeenPart> parts = seenIn(group, extentOfPage());
        if (!parts.empty() && drawn.take(parts, base.paints, found.art)) {
            found.keys.insert(key);
        }
    }
    // Groups that hold nothing else go with them: their ids may be those of objects.
    std::vector<Art> holders;
    walkContent(
        found.art, [](Art) {}, [&](Art group) { holders.push_back(group); });
    found.art.insert(holders.begin(), holders.end());
    return found;
}

} // namespace corvane
