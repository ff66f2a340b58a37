#include "writer/patch/compare/kept_annotations.h"

#include "reader/content/art.h"
#include "reader/font/font_entries.h"
#include "reader/form/annotations.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "writer/art/layers.h"
#include "writer/art/outline.h"
#include "writer/patch/art_extent.h"
#include "writer/patch/compare/group_comparison.h"
#include "writer/patch/compare/group_parts.h"
#include "writer/patch/text/text_reach.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>

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

/// What a person calls annotations of a Subtype (PDF Reference, 8.4.5).
constexpr std::array<std::pair<std::string_view, std::string_view>, 17> kinds = {{
    {"Text", "note"},
    {"Link", "link"},
    {"FreeText", "text box"},
    {"Line", "line"},
    {"Square", "rectangle"},
    {"Circle", "ellipse"},
    {"Polygon", "polygon"},
    {"PolyLine", "line"},
    {"Highlight", "highlight"},
    {"Underline", "underline"},
    {"Squiggly", "underline"},
    {"StrikeOut", "strikeout"},
    {"Stamp", "stamp"},
    {"Caret", "caret"},
    {"Ink", "drawing"},
    {"FileAttachment", "attached file"},
    {"Widget", "form field"},
}};

/// Names for persons: "stamp, object 30" is the kind, and what tells it from others of its kind.
class AnnotationNames {
public:
    explicit AnnotationNames(DocumentCache& cache) : cache_(cache) {}

    std::string of(const FormFacts& form) {
        if (form.object == 0) {
            return "annotation, content " + std::to_string(form.content);
        }
        if (subtypes_.empty()) {
            for (const Annotation& annotation : shownAnnotations(cache_)) {
                subtypes_.emplace(annotation.number,
                                  nameEntry(cache_, annotation.dictionary.get(), "Subtype"));
            }
        }
        const auto known = std::ranges::find(kinds, subtypes_[form.object], [](const auto& kind) {
            return std::string(kind.first);
        });
        const std::string_view kind = known != kinds.end() ? known->second : "annotation";
        return std::string(kind) + ", object " + std::to_string(form.object);
    }

private:
    DocumentCache& cache_;
    std::map<std::int32_t, std::string> subtypes_; ///< by object
};

ArtExtent reachOf(Art art) {
    return artKind(art) == ArtKind::text ? reachOfText(art) : extentOf(art);
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
            extent.add(reachOf(part.art));
        }
    }
    return extent;
}

/// Where what is added to the page lies, which is measured once for all annotations.
class AddedArt {
public:
    explicit AddedArt(const ChargedList<Art>& added) {
        for (const Art art : added.items()) {
            extents_.push(reachOf(art));
        }
        if (!extents_.empty()) {
            std::ranges::sort(std::span(&extents_[0], extents_.size()), {}, &ArtExtent::left);
        }
    }

    /// Whether something of it lies there.
    bool isWithin(const ArtExtent& extent) const {
        const auto begin = extents_.items().begin();
        const auto end =
            std::ranges::upper_bound(extents_.items(), extent.right, {}, &ArtExtent::left);
        return std::any_of(begin, end, [&](const ArtExtent& each) { return each.meets(extent); });
    }

private:
    ChargedList<ArtExtent> extents_; ///< from the left
};

void tell(const std::string& name) {
    const auto extension = knownExtension();
    if (extension && extension->annotationKept != nullptr) {
        extension->annotationKept(extension->context, name);
    }
}

} // namespace

bool tellChangedAnnotations(DocumentCache& cache, const BaseReading& base,
                            const ChargedList<Art>& named, const ChargedList<Art>& added,
                            const UnmarkedAnnotations& unmarked) {
    if (base.annotations == Art::null) {
        return false;
    }
    const Annotations known = annotationsIn(base.annotations);
    const ArtExtent page = extentOfPage();
    AnnotationNames names(cache);
    bool isAny = false;
    for (const Art art : named.items()) {
        const FormFacts form = formOf(art);
        const auto was = known.find(annotationKey(form));
        if (was != known.end() && !unmarked.keys.contains(was->first) && !isUnseen(was->second) &&
            !isSameArt(seenIn(was->second, page), seenIn(art, page), base.paints)) {
            tell(names.of(form));
            isAny = true;
        }
    }
    if (named.empty() && unmarked.keys.size() < known.size()) {
        const AddedArt news(added);
        for (const auto& [key, group] : known) {
            if (!unmarked.keys.contains(key) && !isUnseen(group) &&
                news.isWithin(extentOfAnnotation(group))) {
                isAny = true;
                tell(names.of(formOf(group)) +
                     ", whose place holds something new, which becomes content of the page");
            }
        }
    }
    return isAny;
}

} // namespace corvane
