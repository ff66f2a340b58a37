// Clips: what `clip-path` names, as the path or text that clips a group.
#pragma once

#include "app/svg/read/context.h"
#include "app/svg/read/paint/paint_reader.h"
#include "app/svg/read/shape_builder.h"
#include "app/svg/read/style/computed_style.h"

#include <string_view>
#include <unordered_set>
#include <vector>

namespace corvane {

class ClipReader {
public:
    ClipReader(ReadingContext& context, PaintReader& paints)
        : context_(context), paints_(paints), shape_(context.document, context.tally) {}

    /// The `clipPath` of that id and those that clip it in turn, the outermost first. Empty, and
    /// counted, where there is none or they form a circle.
    std::vector<pugi::xml_node> chain(std::string_view id);

    /// Whether the clip's units are the box of what is clipped.
    static bool fitsBox(pugi::xml_node clip);

    /// Makes the path, compound path or text of one `clipPath` as the frontmost child of `group`,
    /// and has it clip the group. `toArt` and `viewport` are the user space of what is clipped,
    /// `box` around that, where `fitsBox`.
    Art clip(Art group, pugi::xml_node clip, const RealMatrix& toArt, const Viewport& viewport,
             const UserBox& box = {});

private:
    struct Part {
        Element element = Element::unknown;
        Attributes attributes;
        ComputedStyle style;
        LengthContext lengths;
        RealMatrix matrix;
        pugi::xml_node node;
        bool again = false; ///< it was read before
    };

    std::vector<Part> parts(pugi::xml_node clip, const RealMatrix& toArt, Viewport viewport,
                            const UserBox& box);
    bool readPart(pugi::xml_node node, const ComputedStyle& outer, RealMatrix matrix,
                  const Viewport& viewport, Part& into);
    Art clipWithText(const std::vector<Part>& parts, Art group);
    Art clipWithShapes(const std::vector<Part>& parts, Art group);
    Art draw(const Part& part, Art group);
    void orient(Art shape);
    Art unite(Art shape, Art more);

    ReadingContext& context_;
    PaintReader& paints_;
    ShapeBuilder shape_;
    std::unordered_set<std::size_t> known_; ///< clips that were read before
};

} // namespace corvane
