// The text of a glyph, of all that several sources say.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace corvane {

/// Characters of one code: more than the longest ligature, or a letter with its marks, has. Further
/// ones are cut off: a small file must not become gigabytes of text.
inline constexpr std::size_t longestMeaning = 16;

/// Offered one source after the other, it takes the first that can be true: text, blank only for a
/// glyph that shows nothing, and running one way: no program joins the rest to one glyph.
class MeaningChoice {
public:
    explicit MeaningChoice(std::function<bool()> isBlankGlyph)
        : isBlankGlyph_(std::move(isBlankGlyph)) {}

    /// Whether more sources are of use.
    bool isOpen() const { return taken_.empty(); }
    void offer(const std::u32string& text);
    /// What was taken, else a private-use character: no glyph is without a text.
    std::u32string textOr(std::uint32_t code) const;

private:
    std::function<bool()> isBlankGlyph_; ///< asked where it matters: outlines take time
    std::u32string taken_;
};

} // namespace corvane
