#include "app/artwork/classic/text_stream.h"

#include "app/artwork/classic/host_fonts.h"
#include "app/artwork/error.h"

#include <algorithm>
#include <limits>

namespace corvane {

namespace {

constexpr std::size_t mostLetters = std::numeric_limits<std::int32_t>::max() / 2;
/// Bytes of a kern with its place in the tree of them.
constexpr std::int64_t kernBytes = 64;

} // namespace

TextStream::TextStream(Document& document, Art text)
    : document_(document), text_(text),
      budget_(document.budget().limit() - document.budget().used()) {
    if (document.textRunCount(text) != 0) {
        throw ArtworkError("the text object has its runs already");
    }
    setFont("Helvetica");
    setCharStyle(charStyle_);
}

bool TextStream::setFont(std::string_view name) {
    const HostFonts& fonts = HostFonts::all();
    const FontFacts facts = fonts.facts(name);
    const auto place = fonts.find(name);
    const auto drawn = place ? place : fonts.fontOf(facts);
    current_.font = document_.addFont(facts);
    current_.hostFont = drawn.value_or(-1);
    charStyle_.font[0] = static_cast<std::uint8_t>(name.size());
    std::ranges::copy(name, charStyle_.font + 1);
    charStyle_.technology = drawn ? fonts.technology(*drawn) : type1Technology;
    return place.has_value();
}

void TextStream::setCharStyle(const CharStyle& style) {
    const CharStyle former = charStyle_;
    charStyle_ = style;
    std::ranges::copy(former.font, charStyle_.font);
    charStyle_.technology = former.technology;
    current_.size = style.size;
    current_.leading = style.leading;
    current_.rise = style.rise;
    current_.tracking = style.tracking;
    current_.horizontalScale = style.horizontalScale;
    current_.verticalScale = style.verticalScale;
}

void TextStream::setParaStyle(const ParaStyle& style) {
    paraStyle_ = style;
    current_.wordSpacing = style.wordSpacing;
    current_.letterSpacing = style.letterSpacing;
}

void TextStream::append(std::span<const std::uint8_t> letters) {
    if (letters.size() > mostLetters - letters_.size()) {
        throw ArtworkError("the text is longer than can be counted");
    }
    if (letters.empty()) {
        return;
    }
    budget_.charge(std::ssize(letters));
    if (looks_.empty() || looks_.back() != current_) {
        budget_.charge(sizeof(Look) + sizeof(Span));
        looks_.push_back(current_);
        spans_.push_back({length(), looks_.size() - 1});
    }
    letters_.insert(letters_.end(), letters.begin(), letters.end());
}

void TextStream::select(std::int32_t position) {
    if (position < 0 || position > length()) {
        throw ArtworkError("the run has no such position");
    }
    selected_ = position;
}

Fixed TextStream::kerning() const {
    const auto found = kerns_.find(selected_);
    return found == kerns_.end() ? 0 : found->second;
}

void TextStream::setKerning(Fixed kern) {
    const auto [at, isNew] = kerns_.try_emplace(selected_);
    if (isNew) {
        budget_.charge(kernBytes);
    }
    at->second = kern;
}

} // namespace corvane
