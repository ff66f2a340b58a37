#include "reader/text/clip_lines.h"

namespace corvane {

namespace {

bool looksAlike(const TextRun& a, const TextRun& b) {
    return a.font == b.font && a.size == b.size && a.rise == b.rise && a.spacing == b.spacing;
}

std::int32_t lastFace(const ClipRun& run) {
    return run.pieces.empty() ? 0 : run.pieces.back().face;
}

/// Puts the letters of a run behind those of another, which has the same look.
void append(ClipRun& former, const TextRun& run) {
    const auto behind = static_cast<std::int32_t>(former.text.size());
    if (lastFace(former) != 0 && (run.pieces.empty() || run.pieces.front().start != 0)) {
        former.pieces.push_back({.start = behind});
    }
    for (TextPiece piece : run.pieces) {
        piece.start += behind;
        if (piece.shift != 0 || piece.face != lastFace(former)) {
            former.pieces.push_back(piece);
        }
    }
    former.text += run.text;
}

} // namespace

void ClipLines::charge(std::size_t bytes) {
    text_.bytes += static_cast<std::int64_t>(bytes);
    text_.charge.resize(text_.bytes);
}

void ClipLines::beginLine(TextLine& line) {
    charge(sizeof(ClipLine));
    text_.lines.push_back({.line = line, .runs = {}});
}

void ClipLines::addRun(TextRun& run, ShownPart) {
    charge(sizeof(ClipRun) + run.text.size() + run.pieces.size_bytes());
    std::deque<ClipRun>& runs = text_.lines.back().runs;
    if (!runs.empty() && looksAlike(runs.back().run, run)) {
        return append(runs.back(), run);
    }
    runs.push_back({.run = run,
                    .text = std::string(run.text),
                    .pieces = {run.pieces.begin(), run.pieces.end()}});
    runs.back().run.text = {};
    runs.back().run.pieces = {};
}

} // namespace corvane
