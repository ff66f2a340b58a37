#include "app/artwork/classic/text_walk.h"

#include "app/artwork/classic/host_fonts.h"
#include "app/artwork/error.h"
#include "app/artwork/geometry/geometry.h"
#include "app/artwork/text/characters.h"

#include <algorithm>
#include <string_view>

namespace corvane {

namespace {

/// The letter of that character, as far as the fonts are known.
std::uint8_t letterOf(const HostFonts::Measured* font, char32_t character) {
    const auto code = font == nullptr ? std::nullopt : codeOf(*font, character);
    if (!code) {
        throw ArtworkError(
            "the text has letters that the host's character set lacks; save it in the "
            "extended profile");
    }
    return *code;
}

/// How far below its top a letter of a column stands, in ems: as the PDF Reference has it, 5.6.3.
constexpr double columnAscent = 0.88;

} // namespace

TextWalk::TextWalk(const Document& document, Art text) : text_(text) {
    const TextLine line = document.textLine(text);
    isVertical_ = line.isVertical;
    lines_.push_back({.matrix = realMatrix(line.matrix)});
    for (std::int32_t number = 0; number < document.textRunCount(text); ++number) {
        addRun(document, number);
    }
    lines_.back().count = static_cast<std::int32_t>(codes_.size()) - lines_.back().first;
    fitLine(line);
    if (LetterPath path(line.path, line.isPathClosed); !path.isEmpty()) {
        path_ = std::move(path);
    }
}

void TextWalk::addRun(const Document& document, std::int32_t number) {
    const TextRun run = document.textRun(text_, number);
    const auto font = HostFonts::all().fontOf(document.fonts().facts(run.font));
    const HostFonts::Measured* const measured = font ? &HostFonts::all().measured(*font) : nullptr;
    if (run.line) {
        const auto first = static_cast<std::int32_t>(codes_.size());
        lines_.back().count = first - lines_.back().first;
        lines_.push_back({.matrix = realMatrix(*run.line), .first = first});
        pen_ = 0;
    }
    std::string_view left = run.text;
    auto piece = run.pieces.begin();
    bool starts = true;
    while (!left.empty()) {
        const auto at = static_cast<std::int32_t>(run.text.size() - left.size());
        if (piece != run.pieces.end() && piece->start == at) {
            pen_ += piece->shift / double{fixedOne} * (run.size / double{fixedOne});
            starts = starts || piece->shift != 0;
            ++piece;
        }
        if (starts) {
            runs_.push_back({.tableRun = number,
                             .first = static_cast<std::int32_t>(codes_.size()),
                             .hostFont = font.value_or(-1)});
            starts = false;
        }
        const Character character = decodeCharacter(left);
        left.remove_prefix(std::max<std::size_t>(character.length, 1));
        const std::uint8_t letter = letterOf(measured, character.code);
        addLetter(letter, measured->info.widths[letter] / double{fixedOne}, run);
    }
}

void TextWalk::addLetter(std::uint8_t code, double width, const TextRun& run) {
    const double size = run.size / double{fixedOne};
    codes_.push_back(code);
    places_.push_back(pen_);
    widths_.push_back(width * size);
    pen_ += (isVertical_ ? size : width * size) + run.spacing / double{fixedOne};
    ++runs_.back().count;
}

/// Of a text object of one line: its length, and which of its points stands at the origin.
void TextWalk::fitLine(const TextLine& line) {
    if (codes_.empty() || lines_.size() > 1) {
        return;
    }
    if (line.length > 0 && pen_ > 0) {
        const double wanted = line.length / double{fixedOne};
        const auto gaps = static_cast<double>(codes_.size() - 1);
        const double more = line.stretchesLetters || gaps == 0 ? 0 : (wanted - pen_) / gaps;
        stretch_ = line.stretchesLetters ? wanted / pen_ : 1;
        double added = 0;
        for (double& place : places_) {
            place = place * stretch_ + added;
            added += more;
        }
        pen_ = wanted;
    }
    const double back = line.anchor == TextAnchor::start    ? 0
                        : line.anchor == TextAnchor::middle ? pen_ / 2
                                                            : pen_;
    const double start = line.pathStart / double{fixedOne};
    std::ranges::transform(places_, places_.begin(),
                           [&](double place) { return place - back + start; });
}

std::span<const std::uint8_t> TextWalk::letters(const Run& run) const {
    return std::span(codes_).subspan(static_cast<std::size_t>(run.first),
                                     static_cast<std::size_t>(run.count));
}

RealMatrix TextWalk::glyphMatrix(const Line& line, std::int32_t letter) const {
    const auto index = static_cast<std::size_t>(line.first) + static_cast<std::size_t>(letter);
    const double place = places_[index];
    const double width = widths_[index] * stretch_;
    if (path_) {
        RealMatrix slant = line.matrix;
        slant.tx = slant.ty = 0;
        return multiply(slant, path_->at(place + width / 2));
    }
    if (isVertical_) {
        const double down = index + 1 < places_.size() ? places_[index + 1] - place : 0;
        return multiply({1, 0, 0, 1, -width / 2, -place - columnAscent * down}, line.matrix);
    }
    return multiply({stretch_, 0, 0, 1, place, 0}, line.matrix);
}

} // namespace corvane
