#include "writer/patch/works/shading_works.h"

#include "reader/content/art.h"
#include "runtime/exception.h"
#include "runtime/matrix.h"
#include "writer/art/outline.h"
#include "writer/art/path_works.h"
#include "writer/art/segment_works.h"
#include "writer/art/style_works.h"
#include "writer/image/image_works.h"
#include "writer/patch/compare/movement.h"
#include "writer/patch/works/kept_works.h"
#include "writer/patch/works/placed_image.h"

namespace corvane {

namespace {

void matrixWorks(Walk& walk, const RealMatrix& matrix) {
    if (matrix != RealMatrix()) {
        walk.text.addMatrix(withoutSignedZeros(matrix));
        walk.text.add("cm\n");
    }
}

/// The square that an image fills becomes a clip.
void clipToImage(Walk& walk, const RealMatrix& matrix, const RealMatrix& back) {
    const char* word = "m\n";
    for (const RealPoint& corner :
         {RealPoint{0, 0}, RealPoint{1, 0}, RealPoint{1, 1}, RealPoint{0, 1}}) {
        const RealPoint point = transform(multiply(matrix, back), corner);
        walk.text.addReal(point.x);
        walk.text.addReal(point.y);
        walk.text.add(word);
        word = "l\n";
    }
    walk.text.add("h\nW\nn\n");
}

void clipToPath(Walk& walk, Art art, const RealMatrix& ctm) {
    walk.space = userSpace(ctm);
    segmentWorks(walk, subpathsWithin(art).items());
    walk.space.reset();
    walk.text.add(clipOperator(leadingStyle(art)));
    walk.text.add("n\n");
}

} // namespace

void shadingWorks(PatchTools& tools, const PaintedArt& was, Art is,
                  const ArtDifference& difference) {
    Walk& walk = tools.walk;
    const TraceEvent& event = tools.trace.events()[was.event];
    const RealMatrix& ctm = tools.trace.matrix(event.behind.matrix);
    const std::optional<RealMatrix> back = inverse(ctm);
    if (!back) {
        failException(Exception::unpatchable);
    }
    const auto inUserSpace = [&](const RealMatrix& movement) {
        return multiply(multiply(ctm, movement), *back);
    };
    if (was.isImage) {
        if (difference.image) {
            return imageWorks(tools, was, is, difference);
        }
        if (difference.place) {
            matrixWorks(walk, inUserSpace(movementOfImage(was.art, is)));
        }
        clipToImage(walk, realMatrix(placedImage(was.art).matrix), *back);
    } else if (difference.paints || difference.fill || difference.strokeParts()) {
        matrixWorks(walk, *back);
        return artWorks(walk, is);
    } else if (difference.movesPaint) {
        matrixWorks(walk, inUserSpace(movementOf(was.art, is).value_or(RealMatrix())));
        clipToPath(walk, was.art, ctm);
    } else {
        clipToPath(walk, is, ctm);
    }
    rangesWorks(tools, {{event.start, event.end}});
}

} // namespace corvane
