#include "writer/patch/compare/kept_annotations.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "writer/art/art_stack.h"
#include "writer/art/layers.h"
#include "writer/art/outline.h"
#include "writer/patch/compare/group_comparison.h"
#include "writer/patch/compare/group_parts.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace corvane {

namespace {

/// By the object of the annotation; those without one by their content, below 0.
using Annotations = std::unordered_map<std::int64_t, Art>;

std::int64_t keyOf(const FormFacts& form) {
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
            annotations.emplace(keyOf(form), step.art);
        } else {
            pending.enter(firstChild(step.art), ArtStep::What::end);
        }
    }
    return annotations;
}

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

} // namespace

void refuseChangedAnnotations(const BaseReading& base, const EditedArtwork& artwork) {
    if (base.annotations == Art::null || artwork.annotations.empty()) {
        return;
    }
    const Annotations known = annotationsIn(base.annotations);
    const auto extension = knownExtension();
    bool isRefused = false;
    for (const Art art : artwork.annotations.items()) {
        const FormFacts form = formOf(art);
        const auto was = known.find(keyOf(form));
        if (was == known.end() || isUnseen(was->second) ||
            isSameGroup(was->second, art, base.paints)) {
            continue;
        }
        isRefused = true;
        if (extension && extension->annotationKept != nullptr) {
            extension->annotationKept(extension->context, nameOf(form));
        }
    }
    if (isRefused && !(extension && extension->overwrites)) {
        failException(Exception::annotationChanged);
    }
}

} // namespace corvane
