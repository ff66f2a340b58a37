#include "fuzz/support/text_edit.h"

#include "app/artwork/geometry/geometry.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::fuzz {

namespace {

/// The place of a line whose letters run from the right is its right end in a file.
TextLine asInFile(TextLine line) {
    if (line.reach != 0) {
        const double reach = static_cast<double>(line.reach) / fixedOne;
        const RealPoint end = transform(realMatrix(line.matrix), {reach, 0});
        line.matrix.tx = fixedNumber(end.x);
        line.matrix.ty = fixedNumber(end.y);
        line.anchor = TextAnchor::end;
        line.reach = 0;
    }
    return line;
}

} // namespace

/// `change` may take the text of a run away, and the run is left out.
template <class Change>
void TextEdit::remake(Change change) {
    const Art made = document_.make(ArtKind::text, Placement::inFront, text_);
    document_.setTextLine(made, asInFile(document_.textLine(text_)));
    const std::int32_t runs = document_.textRunCount(text_);
    for (std::int32_t i = 0; i < runs; ++i) {
        TextRun run = document_.textRun(text_, i);
        change(run);
        if (!run.text.empty()) {
            document_.addTextRun(made, run);
        }
    }
    document_.dispose(text_);
}

void TextEdit::loseSources() {
    remake([](TextRun& run) { run.source = lostSource; });
}

/// Makes one run of the first ones, as where artwork has them as one element: their letters, or
/// some of them and others. Its source reaches over all of them, or is a number alone.
void TextEdit::joinRuns(std::uint32_t much) {
    const std::int32_t count = document_.textRunCount(text_);
    if (count == 0) {
        return;
    }
    const std::int32_t joined = 1 + static_cast<std::int32_t>(much / 4) % count;
    std::string letters;
    std::vector<TextPiece> pieces;
    ArtSource source = document_.textRun(text_, 0).source;
    for (std::int32_t i = 0; i < joined; ++i) {
        const TextRun run = document_.textRun(text_, i);
        for (TextPiece piece : run.pieces) {
            piece.start += static_cast<std::int32_t>(letters.size());
            pieces.push_back(piece);
        }
        letters += run.text;
        source.end = std::max(source.end, run.source.end);
    }
    if (much % 4 == 1) {
        letters = "A" + letters;
    } else if (much % 4 == 2) {
        std::size_t half = letters.size() / 2;
        while ((static_cast<unsigned char>(letters[half]) & 0xC0) == 0x80) {
            --half;
        }
        letters = letters.substr(0, half) + "A B";
    } else if (much % 4 == 3) {
        source.start = source.end = 0;
    }
    if (much % 4 == 1 || much % 4 == 2) {
        pieces.clear();
    }
    std::int32_t number = 0;
    remake([&](TextRun& run) {
        if (number++ == 0) {
            run.text = letters;
            run.pieces = pieces;
            run.source = source;
        } else if (number <= joined) {
            run.text = {};
        }
    });
}

void TextEdit::edit(const Choose& choose) {
    constexpr std::array<std::string_view, 6> words = {"", "A", "AB A", "ffiA", "x y", "\u05D0"};
    const std::uint32_t what = choose(7);
    const std::uint32_t much = choose(256);
    if (what == 6) {
        return joinRuns(much);
    }
    std::string letters;
    remake([&](TextRun& run) {
        switch (what) {
        case 0:
            run.style.fill = {};
            run.style.fill.component[0] = static_cast<Fixed>(much << 8);
            return;
        case 1:
            run.size = static_cast<Fixed>(1 + much * (fixedOne / 8));
            return;
        case 2:
            run.source = {.start = 0, .end = 0, .ordinal = run.source.ordinal};
            return;
        case 3:
            run.spacing = static_cast<Fixed>(much << 12);
            return;
        case 4:
            letters = std::string(words[much % words.size()]) + std::string(run.text);
            run.pieces = {};
            break;
        default:
            letters = words[much % words.size()];
            run.pieces = {};
        }
        run.text = letters;
    });
}

} // namespace corvane::fuzz
