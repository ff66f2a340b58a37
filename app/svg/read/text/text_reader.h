// Reads a `text` element and all within it into text objects.
#pragma once

#include "app/svg/read/context.h"
#include "app/svg/read/paint/paint_reader.h"
#include "app/svg/read/text/letter_case.h"
#include "app/svg/read/text/line_maker.h"

#include <vector>

namespace corvane {

class TextReader {
public:
    TextReader(ReadingContext& context, PaintReader& paints, const LineFrame& frame,
               const Viewport& viewport, bool isCounted, bool idsTell)
        : context_(context), paints_(paints), frame_(frame), viewport_(viewport),
          isCounted_(isCounted), idsTell_(idsTell), lines_(context, frame) {}

    /// Whether anything was made. `style` is that of the element.
    bool read(pugi::xml_node text, const Attributes& attributes, const ComputedStyle& style);

private:
    /// An element whose letters are being read.
    struct Level {
        pugi::xml_node next;
        pugi::xml_node styled; ///< the element whose exact values in hidden attributes count
        ComputedStyle style;
        LetterLook look;
        double shift = 0;      ///< of the baseline, up
        bool looked = false;   ///< `look` is whole
        bool isOnPath = false; ///< its letters, and it is the element of the path
    };

    void open(pugi::xml_node element, const Attributes& attributes, const ComputedStyle& style);
    void close();
    void visit(pugi::xml_node node);
    void enter(pugi::xml_node node, Element element);
    void enterPath(TextPath path);
    void fit(Level& level, const Attributes& attributes);
    void readLetters(std::string_view text);
    const LetterLook& lookOf(Level& level);
    void setFont(LetterLook& look, const ComputedStyle& style);
    void decorate(LetterLook& look, const ComputedStyle& style);

    ReadingContext& context_;
    PaintReader& paints_;
    LineFrame frame_;
    Viewport viewport_;
    bool isCounted_; ///< what is read counts as read again
    bool idsTell_;   ///< ids of runs are those that the writer gave
    UserBox box_;    ///< around the letters, more or less
    LineMaker lines_;
    LetterPlaces places_;
    std::vector<Level> levels_;
    CaseChanger cases_;
    std::size_t letters_ = 0; ///< so far
    std::uint32_t elements_ = 0;
    std::uint32_t fitted_ = 0; ///< elements with a length
    bool isBroken_ = false;    ///< elements within the text have places, as lines have
    bool isOnPath_ = false;
    bool isSideways_ = false; ///< vertical text has letters that would lie on their side
    bool afterBlank_ = true;
};

} // namespace corvane
