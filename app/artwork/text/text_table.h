// The lines of text of a document: where they lie, and their runs.
#pragma once

#include "app/artwork/budget.h"
#include "app/artwork/storage/side_table.h"
#include "app/artwork/text/styles.h"
#include "host/matrix.h"
#include "host/text.h"

#include <cstdint>
#include <memory_resource>
#include <span>

namespace corvane {

/// Memory that is charged to a document.
class ChargedMemory : public std::pmr::memory_resource {
public:
    explicit ChargedMemory(ArtworkBudget& budget) : budget_(&budget) {}

private:
    void* do_allocate(std::size_t bytes, std::size_t alignment) override;
    void do_deallocate(void* block, std::size_t bytes, std::size_t alignment) override;
    bool do_is_equal(const memory_resource& other) const noexcept override {
        return this == &other;
    }

    ArtworkBudget* budget_;
};

/// Runs, letters, pieces and paths lie in one pool. Copies share them: who changes runs that are
/// shared takes runs of its own first. What is disposed of is given back with the document: text
/// comes and goes as a whole.
class TextTable {
public:
    TextTable(ArtworkBudget& budget, StyleTable& styles)
        : styles_(styles), lines_(budget), memory_(budget), pool_(firstBlock, &memory_) {}

    TextLine line(NodeIndex) const;
    /// Of a line that was checked, whose path is copied. Throws `ArtworkError` past the budget.
    void setLine(NodeIndex, const TextLine&);

    std::int32_t runCount(NodeIndex) const;
    TextRun run(NodeIndex, std::int32_t index) const;
    const PathStyle& runStyle(NodeIndex, std::int32_t index) const;
    void setRunStyle(NodeIndex, std::int32_t index, const PathStyle&);
    /// Whether there are lines beside the first.
    bool hasFurtherLines(NodeIndex node) const { return lineAt(node).hasFurther; }
    /// Of a run that was checked. Pieces that change nothing are left out. Throws `ArtworkError`
    /// past the budget.
    void addRun(NodeIndex, const TextRun&);
    /// The same, before all others; the run that was the first is moved on by `gap`, in its ems.
    void addRunBefore(NodeIndex, const TextRun&, Fixed gap);
    /// These, in place of those that are there.
    void setRuns(NodeIndex, std::span<const TextRun>);

    void copy(NodeIndex from, NodeIndex to);
    void erase(NodeIndex node) { lines_.erase(node); }
    /// Enlarges all lengths of the runs, line widths too; `map` is for the matrices of the lines
    /// that they begin.
    void changeRuns(NodeIndex, double scale, const RealMatrix& map);

private:
    static constexpr std::size_t firstBlock = 4096;

    /// What few runs have.
    struct Decorations {
        const TextDecoration* first = nullptr;
        std::size_t count = 0;
    };
    struct Opacities {
        double fill = 1;
        double stroke = 1;
    };
    struct Run {
        const char* text = nullptr;
        const TextPiece* pieces = nullptr;
        const Matrix* line = nullptr;         ///< of the line that it begins
        const Opacities* opacities = nullptr; ///< where it is not opaque
        const Decorations* decorations = nullptr;
        std::int64_t start = 0; ///< of the source, as the next three
        std::int64_t end = 0;
        std::int32_t ordinal = -1;
        std::int32_t content = 0;
        std::uint32_t length = 0; ///< bytes of the text
        std::uint32_t pieceCount = 0;
        Font font = Font::null;
        Fixed size = 0;
        Fixed rise = 0;
        Fixed spacing = 0;
        std::uint32_t style = 0;
    };
    /// What few lines have.
    struct LinePath {
        const Segment* segments = nullptr;
        std::uint32_t count = 0;
        bool isClosed = false;
        Fixed start = 0;
    };
    struct Line {
        Matrix matrix;
        Fixed length = 0;
        Fixed reach = 0;
        TextAnchor anchor = TextAnchor::start;
        TextOrder order = TextOrder::visual;
        bool isVertical = false;
        bool stretchesLetters = false;
        const LinePath* path = nullptr;
        Run* runs = nullptr;
        std::int32_t count = 0;
        std::int32_t room = 0;   ///< of `runs`; none to spare where these are shared
        bool isShared = false;   ///< `runs` may be those of another text object too
        bool hasFurther = false; ///< runs begin lines
    };

    Line lineAt(NodeIndex) const;
    void takeRuns(Line& line);
    void move(Run& run, Fixed shift);
    const Run& runAt(NodeIndex, std::int32_t index) const;
    const Decorations* keptDecorations(std::span<const TextDecoration>);
    const LinePath* keptPath(const LinePath* before, const TextLine&);
    template <class T>
    T* allocate(std::size_t count);

    StyleTable& styles_;
    SideTable<Line> lines_;
    ChargedMemory memory_;
    std::pmr::monotonic_buffer_resource pool_;
};

} // namespace corvane
