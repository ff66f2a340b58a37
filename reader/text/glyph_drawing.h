// Glyphs of Type 3 fonts: their procedures are run, and what they paint becomes one group for each
// operator that shows them.
//
// Source: PDF Reference, 5.5.4.
#pragma once

#include "reader/content/interpreter.h"
#include "reader/font/kinds/type3_font.h"

#include <cstdint>

namespace corvane {

/// What one operator shows. A procedure that paints what artwork does not hold hides it all: bytes
/// of the page are in the artwork as a whole or not at all.
class GlyphDrawing {
public:
    /// `space` leads from text space, where the text begins, to the artboard.
    GlyphDrawing(Interpreter& interpreter, Type3Font& font, const RealMatrix& space);

    /// A glyph at `pen` in text space.
    void add(std::uint8_t code, double pen);
    /// The group is whole; null where nothing is seen in it. The host learns its source.
    Art end();

    bool hides() const { return hides_; }

private:
    void draw(const Object& procedure, const RealMatrix& matrix);

    Interpreter& interpreter_;
    Type3Font& font_;
    const RealMatrix space_;
    const GraphicsState outer_; ///< each procedure begins with it
    Art group_ = Art::null;
    Omissions omissions_; ///< of all procedures, not told yet
    bool hides_ = false;
};

} // namespace corvane
