#include "app/artwork/text/text_table.h"

#include "app/artwork/error.h"
#include "app/artwork/geometry/arithmetic.h"
#include "app/artwork/geometry/geometry.h"

#include <algorithm>
#include <limits>
#include <span>
#include <vector>

namespace corvane {

namespace {

constexpr std::int32_t mostRuns = std::numeric_limits<std::int32_t>::max() / 2;

/// Keeps `use(piece)` to the pieces that change something.
template <class Use>
void forEachChange(std::span<const TextPiece> pieces, Use use) {
    std::int32_t face = 0;
    Fixed turn = 0;
    for (const TextPiece& piece : pieces) {
        if (piece.shift != 0 || piece.face != face || piece.turn != turn) {
            use(piece);
        }
        face = piece.face;
        turn = piece.turn;
    }
}

} // namespace

void* ChargedMemory::do_allocate(std::size_t bytes, std::size_t alignment) {
    budget_->charge(static_cast<std::int64_t>(bytes));
    try {
        return std::pmr::new_delete_resource()->allocate(bytes, alignment);
    } catch (...) {
        budget_->discharge(static_cast<std::int64_t>(bytes));
        throw;
    }
}

void ChargedMemory::do_deallocate(void* block, std::size_t bytes, std::size_t alignment) {
    std::pmr::new_delete_resource()->deallocate(block, bytes, alignment);
    budget_->discharge(static_cast<std::int64_t>(bytes));
}

template <class T>
T* TextTable::allocate(std::size_t count) {
    return std::pmr::polymorphic_allocator<>(&pool_).allocate_object<T>(count);
}

TextTable::Line TextTable::lineAt(NodeIndex node) const {
    const Line* const found = lines_.find(node);
    return found == nullptr ? Line{} : *found;
}

const TextTable::Run& TextTable::runAt(NodeIndex node, std::int32_t index) const {
    const Line* const found = lines_.find(node);
    if (found == nullptr || index < 0 || index >= found->count) {
        throw ArtworkError("the text has no such run");
    }
    return found->runs[index];
}

TextLine TextTable::line(NodeIndex node) const {
    const Line line = lineAt(node);
    TextLine told{.matrix = line.matrix,
                  .isVertical = line.isVertical,
                  .anchor = line.anchor,
                  .order = line.order,
                  .length = line.length,
                  .stretchesLetters = line.stretchesLetters,
                  .reach = line.reach};
    if (line.path != nullptr) {
        told.path = {line.path->segments, line.path->count};
        told.isPathClosed = line.path->isClosed;
        told.pathStart = line.path->start;
    }
    return told;
}

/// The segments of `before` are kept where the line still has them.
const TextTable::LinePath* TextTable::keptPath(const LinePath* before, const TextLine& line) {
    if (line.path.empty()) {
        return nullptr;
    }
    const bool same = before != nullptr && before->segments == line.path.data() &&
                      before->count == line.path.size();
    const Segment* segments = line.path.data();
    if (!same) {
        Segment* const copied = allocate<Segment>(line.path.size());
        std::ranges::copy(line.path, copied);
        segments = copied;
    }
    LinePath* const path = allocate<LinePath>(1);
    *path = {segments, static_cast<std::uint32_t>(line.path.size()), line.isPathClosed,
             line.pathStart};
    return path;
}

void TextTable::setLine(NodeIndex node, const TextLine& line) {
    Line changed = lineAt(node);
    changed.matrix = line.matrix;
    changed.length = line.length;
    changed.reach = line.reach;
    changed.anchor = line.anchor;
    changed.order = line.order;
    changed.isVertical = line.isVertical;
    changed.stretchesLetters = line.stretchesLetters;
    changed.path = keptPath(changed.path, line);
    lines_.set(node, changed);
}

std::int32_t TextTable::runCount(NodeIndex node) const {
    return lineAt(node).count;
}

TextRun TextTable::run(NodeIndex node, std::int32_t index) const {
    const Run& run = runAt(node, index);
    const Opacities opacities = run.opacities == nullptr ? Opacities() : *run.opacities;
    const Decorations decorations = run.decorations == nullptr ? Decorations() : *run.decorations;
    return {.font = run.font,
            .size = run.size,
            .rise = run.rise,
            .spacing = run.spacing,
            .text = {run.text, run.length},
            .pieces = {run.pieces, run.pieceCount},
            .decorations = {decorations.first, decorations.count},
            .style = styles_[run.style],
            .fillOpacity = opacities.fill,
            .strokeOpacity = opacities.stroke,
            .source = {run.start, run.end, run.ordinal, run.content},
            .line = run.line == nullptr ? std::nullopt : std::optional(*run.line)};
}

const PathStyle& TextTable::runStyle(NodeIndex node, std::int32_t index) const {
    return styles_[runAt(node, index).style];
}

const TextTable::Decorations*
TextTable::keptDecorations(std::span<const TextDecoration> decorations) {
    if (decorations.empty()) {
        return nullptr;
    }
    TextDecoration* const copied = allocate<TextDecoration>(decorations.size());
    std::ranges::copy(decorations, copied);
    Decorations* const kept = allocate<Decorations>(1);
    *kept = {copied, decorations.size()};
    return kept;
}

void TextTable::addRun(NodeIndex node, const TextRun& run) {
    Line line = lineAt(node);
    if (line.count == line.room) {
        if (line.count >= mostRuns) {
            throw ArtworkError("there are more runs than can be counted");
        }
        const std::int32_t room = std::max(1, line.count * 2);
        Run* const runs = allocate<Run>(static_cast<std::size_t>(room));
        std::copy_n(line.runs, line.count, runs);
        line.runs = runs;
        line.room = room;
        line.isShared = false;
    }
    std::size_t pieceCount = 0;
    forEachChange(run.pieces, [&](const TextPiece&) { ++pieceCount; });
    TextPiece* const pieces = pieceCount == 0 ? nullptr : allocate<TextPiece>(pieceCount);
    TextPiece* nextPiece = pieces;
    forEachChange(run.pieces, [&](const TextPiece& piece) { *nextPiece++ = piece; });
    Matrix* const further = run.line ? allocate<Matrix>(1) : nullptr;
    if (further != nullptr) {
        *further = *run.line;
    }
    const bool isOpaque = run.fillOpacity == 1 && run.strokeOpacity == 1;
    Opacities* const opacities = isOpaque ? nullptr : allocate<Opacities>(1);
    if (opacities != nullptr) {
        *opacities = {run.fillOpacity, run.strokeOpacity};
    }
    char* const text = allocate<char>(run.text.size());
    std::ranges::copy(run.text, text);
    line.hasFurther = line.hasFurther || further != nullptr;
    line.runs[line.count++] = {.text = text,
                               .pieces = pieces,
                               .line = further,
                               .opacities = opacities,
                               .decorations = keptDecorations(run.decorations),
                               .start = run.source.start,
                               .end = run.source.end,
                               .ordinal = run.source.ordinal,
                               .content = run.source.content,
                               .length = static_cast<std::uint32_t>(run.text.size()),
                               .pieceCount = static_cast<std::uint32_t>(pieceCount),
                               .font = run.font,
                               .size = run.size,
                               .rise = run.rise,
                               .spacing = run.spacing,
                               .style = styles_.add(run.style)};
    lines_.set(node, line);
}

/// With all of its letters.
void TextTable::move(Run& run, Fixed shift) {
    std::vector<TextPiece> changed(run.pieces, run.pieces + run.pieceCount);
    if (changed.empty() || changed.front().start != 0) {
        changed.insert(changed.begin(), TextPiece());
    }
    changed.front().shift = saturate(std::int64_t{changed.front().shift} + shift);
    TextPiece* const pieces = allocate<TextPiece>(changed.size());
    std::ranges::copy(changed, pieces);
    run.pieces = pieces;
    run.pieceCount = static_cast<std::uint32_t>(changed.size());
}

void TextTable::addRunBefore(NodeIndex node, const TextRun& run, Fixed gap) {
    addRun(node, run);
    Line line = lineAt(node);
    Run* const last = line.runs + (line.count - 1);
    std::rotate(line.runs, last, last + 1);
    if (line.count > 1 && gap != 0) {
        move(line.runs[1], gap);
    }
}

void TextTable::setRuns(NodeIndex node, std::span<const TextRun> runs) {
    const Line before = lineAt(node);
    Line line = before;
    line.runs = nullptr;
    line.count = line.room = 0;
    line.isShared = line.hasFurther = false;
    lines_.set(node, line);
    try {
        for (const TextRun& run : runs) {
            addRun(node, run);
        }
    } catch (...) {
        lines_.set(node, before);
        throw;
    }
}

/// Gives the line runs of its own.
void TextTable::takeRuns(Line& line) {
    Run* const runs = allocate<Run>(static_cast<std::size_t>(line.count));
    std::copy_n(line.runs, line.count, runs);
    line.runs = runs;
    line.room = line.count;
    line.isShared = false;
}

void TextTable::setRunStyle(NodeIndex node, std::int32_t index, const PathStyle& style) {
    runAt(node, index);
    Line line = lineAt(node);
    if (line.isShared) {
        takeRuns(line);
        lines_.set(node, line);
    }
    line.runs[index].style = styles_.add(style);
}

void TextTable::copy(NodeIndex from, NodeIndex to) {
    if (const Line* const found = lines_.find(from)) {
        Line copied = *found;
        copied.room = copied.count;
        copied.isShared = true;
        lines_.set(from, copied);
        lines_.set(to, copied);
    }
}

void TextTable::changeRuns(NodeIndex node, double scale, const RealMatrix& map) {
    Line line = lineAt(node);
    takeRuns(line);
    for (Run& run : std::span(line.runs, static_cast<std::size_t>(line.count))) {
        run.size = scaledLength(run.size, scale);
        run.rise = scaledLength(run.rise, scale);
        run.spacing = scaledLength(run.spacing, scale);
        run.style = styles_.add(scaled(styles_[run.style], scale));
        if (run.decorations != nullptr) {
            std::vector<TextDecoration> changed(run.decorations->first,
                                                run.decorations->first + run.decorations->count);
            for (TextDecoration& decoration : changed) {
                decoration.size = scaledLength(decoration.size, scale);
                decoration.thickness = scaledLength(decoration.thickness, scale);
            }
            run.decorations = keptDecorations(changed);
        }
        if (run.line != nullptr) {
            const RealMatrix moved = multiply(realMatrix(*run.line), map);
            Matrix* const matrix = allocate<Matrix>(1);
            *matrix = fixedMatrix(multiply({1 / scale, 0, 0, 1 / scale, 0, 0}, moved));
            run.line = matrix;
        }
    }
    lines_.set(node, line);
}

} // namespace corvane
