#include "reader/form/annotations.h"

#include "objects/referenced.h"
#include "reader/content/art.h"
#include "reader/content/interpreter.h"
#include "reader/font/font_entries.h"
#include "reader/form/form_drawing.h"
#include "reader/form/form_path.h"
#include "reader/form/plain_look.h"
#include "reader/layer/layered_drawing.h"
#include "reader/page/page_matrix.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

namespace corvane {

namespace {

/// Flags: Hidden and NoView.
constexpr std::int32_t unseenFlags = 1 << 1 | 1 << 5;

bool isUnseen(DocumentCache& cache, const Object& annotation) {
    const auto flags = static_cast<std::int32_t>(numberEntry(cache, annotation, "F").value_or(0));
    return (flags & unseenFlags) != 0 || nameEntry(cache, annotation, "Subtype") == "Popup";
}

/// What leads to the normal appearance, by the state of the annotation where it has several.
ObjectOwner appearanceEntry(DocumentCache& cache, const Object& annotation) {
    const ObjectOwner appearances = entryOf(cache, annotation, "AP");
    if (!isDictionary(appearances.get())) {
        return {};
    }
    const Object entry = findEntry(cache, appearances.get(), "N");
    const ObjectOwner states = resolved(cache, entry);
    if (typeObject(states.get()) != ObjectType::dictionary) {
        return sharedObject(entry);
    }
    const std::string state = nameEntry(cache, annotation, "AS");
    return sharedObject(findEntry(cache, states.get(), state));
}

/// Whether there is an appearance, be it of another state.
bool hasAppearance(DocumentCache& cache, const Object& annotation) {
    const ObjectOwner appearances = entryOf(cache, annotation, "AP");
    const ObjectOwner normal = entryOf(cache, appearances.get(), "N");
    if (typeObject(normal.get()) != ObjectType::dictionary) {
        return typeObject(normal.get()) == ObjectType::stream;
    }
    return std::ranges::any_of(elementsObject(normal.get()), [&](const Object& element) {
        return typeObject(resolved(cache, element).get()) == ObjectType::stream;
    });
}

std::optional<Annotation> annotationOf(DocumentCache& cache, const Object& element) {
    Annotation annotation;
    annotation.number = referenced(element).number;
    annotation.dictionary = resolved(cache, element);
    const Object& dictionary = annotation.dictionary.get();
    if (typeObject(dictionary) != ObjectType::dictionary || isUnseen(cache, dictionary)) {
        return std::nullopt;
    }
    const std::optional<FormBox> place = boxEntry(cache, dictionary, "Rect");
    if (!place) {
        return std::nullopt;
    }
    annotation.place = *place;
    annotation.entry = appearanceEntry(cache, dictionary);
    annotation.appearance = resolved(cache, annotation.entry.get());
    const bool isLink = nameEntry(cache, dictionary, "Subtype") == "Link";
    const bool isSeen = typeObject(annotation.appearance.get()) == ObjectType::stream;
    const bool isPlain =
        !isSeen && hasPlainLook(cache, dictionary) && !hasAppearance(cache, dictionary);
    return isSeen || isLink || isPlain ? std::optional(std::move(annotation)) : std::nullopt;
}

/// What moves and stretches the box that the appearance fills onto the annotation's place; nothing
/// where it fills none.
std::optional<RealMatrix> fitting(DocumentCache& cache, const Annotation& annotation) {
    const Object& form = annotation.appearance.get();
    const std::optional<FormBox> box = boxEntry(cache, form, "BBox");
    if (!box) {
        return std::nullopt;
    }
    const FormBox around = boxAround(*box, formMatrix(cache, form));
    if (around.isEmpty()) {
        return std::nullopt;
    }
    const FormBox& place = annotation.place;
    const double a = (place.high.x - place.low.x) / (around.high.x - around.low.x);
    const double d = (place.high.y - place.low.y) / (around.high.y - around.low.y);
    return RealMatrix{
        .a = a, .d = d, .tx = place.low.x - a * around.low.x, .ty = place.low.y - d * around.low.y};
}

void drawLink(Interpreter& interpreter, const Annotation& annotation, Art group) {
    const Art path = newArt(ArtKind::path, Placement::inside, group);
    outlineBox(path, annotation.place, interpreter.state.exactCtm);
    const PathStyle style;
    callHost(slot::setPathStyle, path, &style);
}

/// What has no appearance of its own.
void drawPlain(Interpreter& interpreter, const Annotation& annotation) {
    const Object& dictionary = annotation.dictionary.get();
    if (!interpreter.progress.hasRoom(interpreter.cache.work.pageBytes)) {
        interpreter.omissions.note(Omission::form);
        return;
    }
    interpreter.progress.charge(budget::innerContentTokens);
    const Art group = interpreter.containers.make(ArtKind::group);
    if (hasPlainLook(interpreter.cache, dictionary)) {
        drawPlainLook(interpreter, dictionary, annotation.place, group);
    } else {
        drawLink(interpreter, annotation, group);
    }
    if (firstChild(group) == Art::null) {
        callHost(slot::disposeArt, group);
        return;
    }
    const FormFacts facts{.object = annotation.number, .content = ++interpreter.forms};
    callHost(slot::setForm, group, &facts);
}

void drawWithAppearance(Interpreter& interpreter, const Annotation& annotation) {
    if (const auto matrix = fitting(interpreter.cache, annotation)) {
        const RealMatrix page = interpreter.state.exactCtm;
        interpreter.state.exactCtm = multiply(*matrix, page);
        drawAppearance(interpreter, annotation.entry.get(), annotation.appearance.get(),
                       annotation.number);
        interpreter.state.exactCtm = page;
    }
}

void drawAnnotation(Interpreter& interpreter, const Annotation& annotation) {
    const Object layer = findEntry(interpreter.cache, annotation.dictionary.get(), "OC");
    withLayer(interpreter, layer, [&] {
        if (typeObject(annotation.appearance.get()) == ObjectType::stream) {
            drawWithAppearance(interpreter, annotation);
        } else {
            drawPlain(interpreter, annotation);
        }
    });
}

} // namespace

std::vector<Annotation> shownAnnotations(DocumentCache& cache) {
    std::vector<Annotation> annotations;
    const ObjectOwner array = entryOf(cache, cache.page.get(), "Annots");
    if (typeObject(array.get()) != ObjectType::array) {
        return annotations;
    }
    const std::span<const Object> elements = elementsObject(array.get());
    const std::size_t count = std::min<std::size_t>(elements.size(), budget::drawnAnnotations);
    for (const Object& element : elements.first(count)) {
        if (auto annotation = annotationOf(cache, element)) {
            annotations.push_back(*std::move(annotation));
        }
    }
    return annotations;
}

void drawAnnotations(Interpreter& interpreter, const std::vector<Annotation>& annotations,
                     const PageMatrix& matrix, Art container) {
    openState(interpreter, container);
    applyPageMatrix(interpreter, matrix);
    ContentScope scope(interpreter, sharedObject(interpreter.cache.resources.get()));
    interpreter.level.tellsSources = true;
    interpreter.level.area = turnedBox(matrix, cropCache(interpreter.cache));
    for (const Annotation& annotation : annotations) {
        attempted([&] { drawAnnotation(interpreter, annotation); });
    }
    scope.leave();
    interpreter.containers.finish();
}

} // namespace corvane
