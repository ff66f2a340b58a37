#include "writer/patch/compare/kept_annotations.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "writer/art/layers.h"
#include "writer/art/outline.h"
#include "writer/patch/art_extent.h"
#include "writer/patch/compare/group_comparison.h"
#include "writer/patch/compare/group_parts.h"

#include <algorithm>
#include <string>

namespace corvane {

namespace {

/// Such as a link: where it lies is no picture that a person edits.
bool isUnseen(Art group) {
    const ChargedList<GroupPart> parts = partsOf(group);
    return std::ranges::all_of(parts.items(), [](const GroupPart& part) {
        if (part.kind == ArtKind::group) {
            return true;
        }
        const bool isPath = part.kind == ArtKind::path || part.kind == ArtKind::compound;
        const PathStyle style = isPath ? leadingStyle(part.art) : PathStyle();
        return isPath && style.fillPaint == 0 && style.strokePaint == 0;
    });
}

std::string nameOf(const FormFacts& form) {
    return form.object != 0 ? "object " + std::to_string(form.object)
                            : "content " + std::to_string(form.content);
}

/// How far what is seen of an annotation reaches.
ArtExtent extentOfAnnotation(Art group) {
    ArtExtent extent;
    const ChargedList<SeenPart> parts = seenIn(group);
    for (const SeenPart& part : parts.items()) {
        if (part.isClip && !isTextClip(part.art)) {
            return extentOf(part.art);
        }
        if (part.kind != ArtKind::group) {
            extent.add(extentOf(part.art));
        }
    }
    return extent;
}

/// Whether something of that lies there.
bool isWithin(const ArtExtent& extent, const ChargedList<Art>& added) {
    return std::ranges::any_of(added.items(), [&](Art art) { return extentOf(art).meets(extent); });
}

void tell(const std::string& name) {
    const auto extension = knownExtension();
    if (extension && extension->annotationKept != nullptr) {
        extension->annotationKept(extension->context, name);
    }
}

} // namespace

bool tellChangedAnnotations(const BaseReading& base, const ChargedList<Art>& named,
                            const ChargedList<Art>& added, const UnmarkedAnnotations& unmarked) {
    if (base.annotations == Art::null) {
        return false;
    }
    const Annotations known = annotationsIn(base.annotations);
    const ArtExtent page = extentOfPage();
    bool isAny = false;
    for (const Art art : named.items()) {
        const FormFacts form = formOf(art);
        const auto was = known.find(annotationKey(form));
        if (was != known.end() && !unmarked.keys.contains(was->first) && !isUnseen(was->second) &&
            !isSameArt(seenIn(was->second, page), seenIn(art, page), base.paints)) {
            tell(nameOf(form));
            isAny = true;
        }
    }
    if (named.empty()) {
        for (const auto& [key, group] : known) {
            if (!unmarked.keys.contains(key) && !isUnseen(group) &&
                isWithin(extentOfAnnotation(group), added)) {
                isAny = true;
                tell(nameOf(formOf(group)) +
                     "; what is new in its place becomes content of the page");
            }
        }
    }
    return isAny;
}

} // namespace corvane
