#include "app/artwork/storage/segments.h"

#include "app/artwork/error.h"

#include <algorithm>
#include <limits>

namespace corvane {

namespace {

/// As far as a run's first element is counted.
constexpr std::size_t mostElements = std::numeric_limits<std::uint32_t>::max();

constexpr std::int32_t mostRoom = std::numeric_limits<std::int32_t>::max();

bool isStraight(const Segment& segment) {
    return segment.in == segment.anchor && segment.out == segment.anchor && segment.corner == 0;
}

std::size_t elementAt(const SegmentRun& run, std::int32_t index) {
    return run.first + static_cast<std::size_t>(index);
}

std::int32_t roomOf(const SegmentRun& run) {
    return static_cast<std::int32_t>(run.room);
}

void setRoomOf(SegmentRun& run, std::int32_t room) {
    run.room = static_cast<std::uint32_t>(room) & std::uint32_t{mostRoom};
}

} // namespace

template <class T>
bool SegmentPool::Pool<T>::atEnd(const SegmentRun& run) const {
    return run.room == 0 || elementAt(run, roomOf(run)) == elements.size();
}

/// Makes room for `count` elements, of which the run's own keep their values.
template <class T>
void SegmentPool::Pool<T>::setRoom(SegmentRun& run, std::int32_t count) {
    const std::size_t first = run.room == 0 ? elements.size() : run.first;
    const bool stays = atEnd(run);
    const std::size_t start = stays ? first : elements.size();
    const std::int32_t room =
        stays ? count : std::max(count, run.count > mostRoom / 2 ? mostRoom : run.count * 2);
    if (start > mostElements) {
        throw ArtworkError("there are more segments than can be counted");
    }
    elements.resize(start + static_cast<std::size_t>(room));
    if (!stays) {
        move(first, start, run.count);
        waste += run.room;
    }
    run.first = static_cast<std::uint32_t>(start);
    setRoomOf(run, room);
}

template <class T>
void SegmentPool::Pool<T>::release(SegmentRun& run) {
    if (run.room != 0 && atEnd(run)) {
        elements.resize(run.first);
    } else {
        waste += run.room;
    }
    run = {};
}

/// Towards the front the ranges may overlap.
template <class T>
void SegmentPool::Pool<T>::move(std::size_t from, std::size_t to, std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
        elements[to++] = elements[from++];
    }
}

template <class T>
void SegmentPool::Pool<T>::compact(std::span<SegmentRun* const> sorted) {
    std::size_t end = 0;
    for (SegmentRun* const run : sorted) {
        move(run->first, end, run->count);
        run->first = static_cast<std::uint32_t>(end);
        setRoomOf(*run, run->count);
        end += static_cast<std::size_t>(run->count);
    }
    elements.resize(end);
    waste = 0;
}

void SegmentPool::setCount(SegmentRun& run, std::int32_t count) {
    const auto change = [&](auto& pool) {
        if (count > roomOf(run)) {
            pool.setRoom(run, count);
        } else if (count < run.count) {
            const std::size_t dropped = run.room - static_cast<std::uint32_t>(count);
            if (pool.atEnd(run)) {
                pool.elements.resize(elementAt(run, count));
            } else {
                pool.waste += dropped;
            }
            setRoomOf(run, count);
        }
        for (std::int32_t i = run.count; i < count; ++i) {
            pool.elements[elementAt(run, i)] = {};
        }
        run.count = count;
    };
    run.curved != 0 ? change(full_) : change(points_);
}

void SegmentPool::read(const SegmentRun& run, std::int32_t first, std::span<Segment> into) const {
    const Segments segments = view(run);
    for (Segment& segment : into) {
        segment = segments[first++];
    }
}

void SegmentPool::write(SegmentRun& run, std::int32_t first, std::span<const Segment> segments) {
    if (run.curved == 0 && !std::ranges::all_of(segments, isStraight)) {
        makeCurved(run);
    }
    std::size_t at = elementAt(run, first);
    for (const Segment& segment : segments) {
        if (run.curved != 0) {
            full_.elements[at++] = segment;
        } else {
            points_.elements[at++] = segment.anchor;
        }
    }
}

void SegmentPool::makeCurved(SegmentRun& run) {
    SegmentRun curved;
    curved.curved = 1;
    setCount(curved, run.count);
    const Segments straight = view(run);
    for (std::int32_t i = 0; i < run.count; ++i) {
        full_.elements[elementAt(curved, i)] = straight[i];
    }
    points_.release(run);
    run = curved;
}

SegmentRun SegmentPool::copy(const SegmentRun& run) {
    SegmentRun copied;
    copied.curved = run.curved;
    setCount(copied, run.count);
    if (run.curved != 0) {
        full_.move(run.first, copied.first, run.count);
    } else {
        points_.move(run.first, copied.first, run.count);
    }
    return copied;
}

void SegmentPool::release(SegmentRun& run) {
    run.curved != 0 ? full_.release(run) : points_.release(run);
}

void SegmentPool::compact(std::span<SegmentRun*> runs) {
    std::sort(runs.begin(), runs.end(), [](const SegmentRun* left, const SegmentRun* right) {
        return left->curved != right->curved ? left->curved < right->curved
                                             : left->first < right->first;
    });
    const auto curved = std::find_if(runs.begin(), runs.end(),
                                     [](const SegmentRun* run) { return run->curved != 0; });
    const auto straight = static_cast<std::size_t>(curved - runs.begin());
    points_.compact(runs.first(straight));
    full_.compact(runs.subspan(straight));
}

} // namespace corvane
