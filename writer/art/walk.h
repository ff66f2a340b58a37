// What the functions of the art walk share while a page's content is written.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"
#include "reader/classic/font_list.h"
#include "runtime/fixed.h"
#include "writer/art/content_text.h"
#include "writer/art/paint_drawing.h"
#include "writer/art/shadow.h"
#include "writer/art/text/text_drawing.h"

#include <array>
#include <optional>
#include <unordered_set>

namespace corvane {

/// The space that points are written in, where it is not that of the artboard.
struct UserSpace {
    RealMatrix fromArtboard;
    int digits = 0; ///< behind the point: as many as a point needs to come back to the same place
};

/// The user space under that CTM; nothing where the CTM has no inverse.
std::optional<UserSpace> userSpace(const RealMatrix& ctm);

class ContentImages;
class DrawnLooks;
class LayerMarks;

struct Walk {
    explicit Walk(Filter& stream) : text(stream) {}

    /// Writes a point of the artboard.
    void add(const Point& point) {
        if (!space) {
            text.add(point);
        } else {
            const RealPoint to =
                transform(space->fromArtboard, {realFromFixed(point.x), realFromFixed(point.y)});
            text.addReal(to.x, space->digits);
            text.addReal(to.y, space->digits);
        }
    }

    std::optional<UserSpace> space;
    ContentText text;
    Shadow shadow;
    TextDrawing* texts = nullptr; ///< null: text cannot be drawn
    /// Null: the host draws gradients and patterns of fills, and those of strokes are gray.
    PaintDrawing* paints = nullptr;
    ContentImages* images = nullptr; ///< null: images cannot be drawn
    DrawnLooks* looks = nullptr;     ///< null: all art is opaque
    LayerMarks* layers = nullptr;    ///< null: all art shows always
    const std::unordered_set<Art>* others =
        nullptr; ///< art that is no content; null: there is none
    classic::FontList fonts;
    /// Segments of a path come from the host in blocks of this many.
    std::array<Segment, 512> segments;
};

/// Writes q.
void enterWorks(Walk& walk);
/// Writes Q; what is in force then is not known.
void leaveWorks(Walk& walk);
/// Forgets what is in force.
void noneStyleWorks(Walk& walk);

} // namespace corvane
