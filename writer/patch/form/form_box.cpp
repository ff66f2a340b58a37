#include "writer/patch/form/form_box.h"

#include "reader/page/page_matrix.h"
#include "runtime/fixed.h"
#include "writer/patch/art_extent.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

bool isEmpty(const ArtExtent& extent) {
    return extent.left > extent.right || extent.bottom > extent.top;
}

void join(ArtExtent& extent, const ArtExtent& other) {
    extent.left = std::min(extent.left, other.left);
    extent.bottom = std::min(extent.bottom, other.bottom);
    extent.right = std::max(extent.right, other.right);
    extent.top = std::max(extent.top, other.top);
}

/// How far reaches what the box may cut otherwise than before.
ArtExtent extentOfEdit(const EditedForm& form) {
    ArtExtent extent;
    for (EditedIndex i = 0; i < form.inside.objects.size(); ++i) {
        const MatchedObject& object = form.matching.objects[i];
        if (form.isClipChanged || object.source == noSource || object.isCopy ||
            object.difference.any()) {
            join(extent, extentOf(form.inside.objects[i].art));
        }
    }
    return extent;
}

/// 16.16 as points, not beyond the page.
FormBox onPage(const ArtExtent& extent, const Box& page) {
    const auto points = [](std::int64_t value) { return static_cast<double>(value) / fixedOne; };
    return {
        {std::max(points(extent.left), page.left), std::max(points(extent.bottom), page.bottom)},
        {std::min(points(extent.right), page.right), std::min(points(extent.top), page.top)}};
}

/// The box around both, its sides whole numbers where they are new.
FormBox around(const FormBox& former, const FormBox& added, const RealMatrix& toForm) {
    FormBox box = former;
    for (const RealPoint& corner : added.corners()) {
        const RealPoint at = transform(toForm, corner);
        box.low.x = std::min(box.low.x, at.x < former.low.x ? std::floor(at.x) : at.x);
        box.low.y = std::min(box.low.y, at.y < former.low.y ? std::floor(at.y) : at.y);
        box.high.x = std::max(box.high.x, at.x > former.high.x ? std::ceil(at.x) : at.x);
        box.high.y = std::max(box.high.y, at.y > former.high.y ? std::ceil(at.y) : at.y);
    }
    return box;
}

} // namespace

std::optional<FormBox> enlargedBox(DocumentCache& cache, const PageBase& base,
                                   const EditedForm& form) {
    const FormTrace& former = *form.base->form;
    const std::optional<FormBox> box = boxEntry(cache, former.stream.get(), "BBox");
    const std::optional<RealMatrix> toForm = inverse(former.matrix);
    const bool isCutAlike = former.box != Art::null && !form.isClipChanged;
    const ArtExtent extent = isCutAlike ? ArtExtent() : extentOfEdit(form);
    if (!box || !toForm || isEmpty(extent)) {
        return std::nullopt;
    }
    const FormBox seen = onPage(extent, turnedBox(base.matrix, base.mediaBox));
    const FormBox enlarged = seen.isEmpty() ? *box : around(*box, seen, *toForm);
    return enlarged == *box ? std::nullopt : std::optional(enlarged);
}

} // namespace corvane
