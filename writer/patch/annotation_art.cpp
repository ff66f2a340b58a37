#include "writer/patch/annotation_art.h"

#include "reader/form/form_drawing.h"
#include "runtime/exception.h"
#include "writer/art/layers.h"
#include "writer/patch/base/base_reading.h"
#include "writer/patch/compare/content_walk.h"
#include "writer/patch/compare/kept_annotations.h"

#include <set>
#include <utility>

namespace corvane {

namespace {

using ArtSet = std::unordered_set<Art>;

/// Groups that the artwork says to be annotations of the page. A further copy of one is content.
ChargedList<Art> namedIn(const BaseReading& reading) {
    const Annotations known = annotationsIn(reading.annotations);
    ChargedList<Art> named;
    std::set<std::int64_t> keys;
    ChargedList<Layer> layers = listLayers();
    while (!layers.empty()) {
        const Layer layer = layers.pop();
        if (roleOf(layer) == LayerRole::annotations) {
            for (const auto& [key, group] : annotationsIn(artOf(layer))) {
                if (known.contains(key) && keys.insert(key).second) {
                    named.push(group);
                }
            }
        }
    }
    return named;
}

/// False: the page cannot be read, so it was not opened, and no artwork shows its annotations.
bool read(DocumentCache& cache, const PageGeometry& geometry, BaseReading& reading) {
    const Exception code = guarded([&] {
        PageBase page = standingPage(cache);
        page.matrix.exact = inverse(geometry.placement).value_or(RealMatrix());
        readBase(cache, page, reading);
    });
    if (code != Exception::none && code != Exception::limit && !isFileFault(code)) {
        againException();
    }
    resetException();
    return code == Exception::none;
}

ArtSet find(DocumentCache& cache, const BaseReading& reading) {
    const UnmarkedAnnotations unmarked = findUnmarked(reading);
    const ChargedList<Art> named = namedIn(reading);
    ArtSet others = unmarked.art;
    for (const Art group : named.items()) {
        others.insert(group);
    }
    ChargedList<Art> added;
    ChargedList<Art> holders;
    walkContent(
        others, [&](Art art) { added.push(art); }, [&](Art group) { holders.push(group); });
    tellChangedAnnotations(cache, reading, named, added, unmarked);
    for (const Art group : holders.items()) {
        others.insert(group);
    }
    return others;
}

} // namespace

std::unordered_set<Art> annotationArt(DocumentCache& cache, const PageGeometry& geometry) {
    ArtSet others;
    if (!hostHoldsForms()) {
        return others;
    }
    BaseReading reading;
    const Exception code = guarded([&] {
        if (read(cache, geometry, reading) && reading.annotations != Art::null) {
            others = find(cache, reading);
        }
    });
    const Exception disposal = guarded([&] { disposeBase(reading); });
    resetException();
    raiseException(code != Exception::none ? code : disposal);
    return others;
}

} // namespace corvane
