// The segments of all paths of a document, in one pool.
//
// A path without curves (every in and out point equal to its anchor, no corner) takes 8 bytes a
// segment; with its first curve it changes to full segments of 28. A path at the end of its pool
// grows where it is; the path under construction is always there. A path that grows elsewhere moves
// to the end, with room to double. The space that it left is reclaimed when waste exceeds use.
#pragma once

#include "app/artwork/budget.h"
#include "app/artwork/storage/chunks.h"
#include "host/artwork.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>

namespace corvane {

/// Where one path's segments lie. 12 bytes, part of a node; meaningful to its pool only.
struct SegmentRun {
    std::uint32_t first = 0;
    std::int32_t count = 0;
    std::uint32_t room : 31 = 0; ///< elements reserved, `count` or more
    std::uint32_t curved : 1 = 0;
};
static_assert(sizeof(SegmentRun) == 12);

/// A path's segments to read, by value. Valid until the document changes.
class Segments {
public:
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Segment;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = Segment;

        Iterator(const Segments& segments, std::int32_t index)
            : segments_(&segments), index_(index) {}
        Segment operator*() const { return (*segments_)[index_]; }
        Iterator& operator++() {
            ++index_;
            return *this;
        }
        friend bool operator==(const Iterator& left, const Iterator& right) {
            return left.index_ == right.index_;
        }

    private:
        const Segments* segments_;
        std::int32_t index_;
    };

    Segments(const Chunks<Point>& points, const Chunks<Segment>& full, SegmentRun run)
        : points_(&points), full_(&full), run_(run) {}

    std::int32_t size() const { return run_.count; }
    bool empty() const { return run_.count == 0; }

    /// No segment has a control point off its anchor: lines only.
    bool straight() const { return run_.curved == 0; }

    /// `index` from 0 to `size()` - 1.
    Segment operator[](std::int32_t index) const {
        const std::size_t at = run_.first + static_cast<std::size_t>(index);
        if (run_.curved != 0) {
            return (*full_)[at];
        }
        const Point anchor = (*points_)[at];
        return {anchor, anchor, anchor, 0};
    }

    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, run_.count}; }

private:
    const Chunks<Point>* points_;
    const Chunks<Segment>* full_;
    SegmentRun run_;
};

class SegmentPool {
public:
    explicit SegmentPool(ArtworkBudget& budget) : points_(budget), full_(budget) {}

    Segments view(SegmentRun run) const { return {points_.elements, full_.elements, run}; }

    /// New segments lie at 0,0.
    void setCount(SegmentRun&, std::int32_t count);
    /// The range must lie within the run.
    void read(const SegmentRun&, std::int32_t first, std::span<Segment> into) const;
    void write(SegmentRun&, std::int32_t first, std::span<const Segment>);
    SegmentRun copy(const SegmentRun&);
    void release(SegmentRun&);

    /// More is waste than is used: time to `compact`.
    bool wasteful() const { return points_.wasteful() || full_.wasteful(); }
    /// Takes every run of the pool, in any order, and moves them together.
    void compact(std::span<SegmentRun*> runs);

private:
    /// Waste below this is not worth the work of moving.
    static constexpr std::size_t leastWaste = 65536;

    template <class T>
    struct Pool {
        explicit Pool(ArtworkBudget& budget) : elements(budget) {}

        bool wasteful() const { return waste > leastWaste && waste > elements.size() / 2; }
        bool atEnd(const SegmentRun& run) const;
        void setRoom(SegmentRun&, std::int32_t count);
        void release(SegmentRun&);
        void move(std::size_t from, std::size_t to, std::int32_t count);
        void compact(std::span<SegmentRun* const> sorted);

        Chunks<T> elements;
        std::size_t waste = 0; ///< elements that belong to no run
    };

    void makeCurved(SegmentRun&);

    Pool<Point> points_;
    Pool<Segment> full_;
};

} // namespace corvane
