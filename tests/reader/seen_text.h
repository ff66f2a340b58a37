// Text of artwork: what its runs say, and where each letter is seen.
#pragma once

#include "app/artwork/document.h"
#include "host/matrix.h"
#include "runtime/fixed.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {

/// Width of a letter of Helvetica, in ems.
inline double helveticaWidth(char letter) {
    constexpr std::array<std::pair<std::string_view, double>, 6> groups{
        {{"ijl", .222}, {" ft", .278}, {"()r-", .333}, {"cksvxyz", .5}, {"w", .722}, {"m", .833}}};
    for (const auto& [letters, width] : groups) {
        if (letters.find(letter) != std::string_view::npos) {
            return width;
        }
    }
    return .556;
}

/// All text of the layers, from the back to the front.
class SeenTexts {
public:
    explicit SeenTexts(const Document& document) : document_(document) {
        for (Layer layer = document.lastLayer(); layer != Layer::null;
             layer = document.previousLayer(layer)) {
            list(document.layerArt(layer));
        }
    }

    std::vector<Art> texts;

private:
    void list(Art container) {
        const Art clip = document_.clipped(container) ? document_.firstChild(container) : Art::null;
        for (Art art = document_.lastChild(container); art != Art::null;
             art = document_.previousSibling(art)) {
            if (art == clip) {
                continue;
            }
            if (document_.kind(art) == ArtKind::text) {
                texts.push_back(art);
            } else if (document_.kind(art) == ArtKind::group) {
                list(art);
            }
        }
    }

    const Document& document_;
};

/// A letter on the artboard; blanks are not seen.
struct SeenLetter {
    char letter = 0;
    RealMatrix em; ///< from its em to the artboard
    PathStyle style;
};

inline RealMatrix realLine(const Document& document, Art text) {
    const Matrix matrix = document.textLine(text).matrix;
    return {realFromFixed(matrix.a), realFromFixed(matrix.b),  realFromFixed(matrix.c),
            realFromFixed(matrix.d), realFromFixed(matrix.tx), realFromFixed(matrix.ty)};
}

/// Calls `use(letter, place)` for each letter of a line in Helvetica, or of a column.
template <class Use>
void walkLine(const Document& document, Art text, Use use) {
    const RealMatrix line = realLine(document, text);
    const bool isVertical = document.textLine(text).isVertical;
    double pen = 0;
    for (std::int32_t i = 0; i < document.textRunCount(text); ++i) {
        const TextRun run = document.textRun(text, i);
        const double size = realFromFixed(run.size);
        auto piece = run.pieces.begin();
        for (std::size_t at = 0; at < run.text.size(); ++at) {
            if (piece != run.pieces.end() && piece->start == static_cast<std::int32_t>(at)) {
                pen += realFromFixed(piece->shift) * size;
                ++piece;
            }
            const double rise = realFromFixed(run.rise);
            const RealMatrix em{
                size, 0, 0, size, isVertical ? rise : pen, isVertical ? -pen : rise};
            use(run, at, multiply(em, line));
            pen += (isVertical ? columnAdvance : helveticaWidth(run.text[at])) * size +
                   realFromFixed(run.spacing);
        }
    }
}

inline std::vector<SeenLetter> lettersOf(const Document& document) {
    std::vector<SeenLetter> letters;
    for (const Art text : SeenTexts(document).texts) {
        walkLine(document, text, [&](const TextRun& run, std::size_t at, const RealMatrix& em) {
            if (run.text[at] != ' ') {
                letters.push_back({run.text[at], em, run.style});
            }
        });
    }
    return letters;
}

inline std::string realText(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.4g", std::round(value * 100) / 100 + 0.0);
    return text.data();
}

/// "text@x,y size" of each run: x and y of where its first letter stands on the artboard, and
/// behind the size what is not as usual. Shifts are within the text, in thousandths of an em:
/// "a{-90}b". Runs of a line have "+" between them, lines "|".
inline std::string runsText(const Document& document) {
    std::string all;
    for (const Art text : SeenTexts(document).texts) {
        const RealMatrix line = realLine(document, text);
        std::string runs;
        std::string tail;
        std::string shown;
        std::string place;
        const auto end = [&] {
            if (!shown.empty()) {
                runs += (runs.empty() ? "" : " + ") + shown + place + tail;
            }
            shown.clear();
        };
        walkLine(document, text, [&](const TextRun& run, std::size_t at, const RealMatrix& em) {
            if (at == 0) {
                end();
                place = "@" + realText(em.tx) + "," + realText(em.ty) + " ";
                tail = realText(realFromFixed(run.size));
                tail += run.rise == 0 ? "" : " rise " + realText(realFromFixed(run.rise));
                tail += run.spacing == 0 ? "" : " spaced " + realText(realFromFixed(run.spacing));
                tail += run.style.fillPaint != 0 ? "" : " unfilled";
                tail += run.style.strokePaint == 0 ? "" : " stroked";
            }
            for (const TextPiece& piece : run.pieces) {
                if (piece.start == static_cast<std::int32_t>(at) && piece.shift != 0) {
                    shown += "{" + realText(std::round(1000 * realFromFixed(piece.shift))) + "}";
                }
            }
            shown += run.text[at];
        });
        end();
        runs += document.textLine(text).isVertical ? " down" : "";
        if (std::hypot(line.a - 1, line.b) + std::hypot(line.c, line.d - 1) > 1e-3) {
            runs += " by";
            for (const double value : {line.a, line.b, line.c, line.d}) {
                runs += " " + realText(value);
            }
        }
        all += (all.empty() ? "" : " | ") + runs;
    }
    return all;
}

} // namespace corvane::test
