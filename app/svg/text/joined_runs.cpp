#include "app/svg/text/joined_runs.h"

#include "app/svg/text/text_direction.h"

namespace corvane {

namespace {

bool looksAlike(const TextRun& a, const TextRun& b) {
    return a.font == b.font && a.size == b.size && a.rise == b.rise && a.spacing == b.spacing &&
           a.style == b.style && a.fillOpacity == b.fillOpacity &&
           a.strokeOpacity == b.strokeOpacity && a.decorations.empty() && b.decorations.empty();
}

/// Whether the page shows the second one right behind the first.
bool follows(const ArtSource& first, const ArtSource& second) {
    return first.end > 0 && second.start >= first.end && second.content == first.content &&
           first.ordinal >= 0 && second.ordinal == first.ordinal + 1;
}

void append(JoinedRun& joined, const TextRun& run) {
    const auto start = static_cast<std::int32_t>(joined.text.size());
    const bool endsPlain =
        joined.pieces.empty() || (joined.pieces.back().face == 0 && joined.pieces.back().turn == 0);
    if (!endsPlain && (run.pieces.empty() || run.pieces.front().start != 0)) {
        joined.pieces.push_back({.start = start});
    }
    for (TextPiece piece : run.pieces) {
        piece.start += start;
        joined.pieces.push_back(piece);
    }
    joined.text += run.text;
    joined.run.source.end = run.source.end;
}

} // namespace

std::vector<JoinedRun> joinedRuns(std::span<const TextRun> runs) {
    std::vector<JoinedRun> joined;
    for (std::uint32_t number = 0; number < runs.size(); ++number) {
        const TextRun& run = runs[number];
        const bool goesOn = number > 0 && looksAlike(runs[number - 1], run) &&
                            follows(runs[number - 1].source, run.source) &&
                            !holdsRightToLeft(run.text) && !holdsRightToLeft(runs[number - 1].text);
        if (!goesOn) {
            joined.push_back({.run = run, .number = number, .text = {}, .pieces = {}});
        }
        append(joined.back(), run);
    }
    return joined;
}

} // namespace corvane
