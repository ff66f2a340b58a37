// An open run: letters and styles that come one after the other, and become the lines of a text
// object when the run ends.
#pragma once

#include "app/artwork/budget.h"
#include "app/artwork/document.h"
#include "host/classic_text.h"

#include <cstdint>
#include <map>
#include <span>
#include <string_view>
#include <vector>

namespace corvane {

class TextStream {
public:
    /// `text` has its origin already, as the matrix of its line.
    TextStream(Document& document, Art text);

    // Styles of the letters to come.
    void setPaint(const PathStyle& paint) { current_.paint = paint; }
    /// False where the host has no such font; its name is kept.
    bool setFont(std::string_view name);
    const CharStyle& charStyle() const { return charStyle_; }
    void setCharStyle(const CharStyle&);
    const ParaStyle& paraStyle() const { return paraStyle_; }
    void setParaStyle(const ParaStyle&);

    void append(std::span<const std::uint8_t> letters);
    std::int32_t length() const { return static_cast<std::int32_t>(letters_.size()); }

    /// Kerning is in front of the letter counted so.
    void select(std::int32_t position);
    Fixed kerning() const;
    void setKerning(Fixed kern);

    /// Gives the text object its lines.
    void finish();

private:
    friend class LineSetter;

    struct Look {
        Font font = Font::null;
        std::int32_t hostFont = 0; ///< whose metrics count
        Fixed size = 0;
        Fixed leading = 0;
        Fixed rise = 0;
        Fixed tracking = 0;
        Fixed horizontalScale = wholePercent;
        Fixed verticalScale = wholePercent;
        Fixed wordSpacing = wholePercent;
        Fixed letterSpacing = 0;
        PathStyle paint;
        friend bool operator==(const Look&, const Look&) = default;
    };
    /// From `first` on letters have the look counted `look`.
    struct Span {
        std::int32_t first = 0;
        std::size_t look = 0;
    };

    Document& document_;
    Art text_;
    ArtworkBudget budget_; ///< what the document has left
    CharStyle charStyle_;
    ParaStyle paraStyle_;
    Look current_;
    std::vector<Look> looks_;
    std::vector<Span> spans_;
    std::vector<std::uint8_t> letters_;
    std::map<std::int32_t, Fixed> kerns_; ///< by position
    std::int32_t selected_ = 0;
};

} // namespace corvane
