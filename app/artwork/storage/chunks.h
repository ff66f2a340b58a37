// An array that grows at its end without moving what it holds.
#pragma once

#include "app/artwork/budget.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <type_traits>
#include <vector>

namespace corvane {

/// Elements live in chunks that stay where they are: growing costs no copy and no second block
/// beside the first, references to elements outlive later growth, and every chunk is charged to the
/// budget when it is made. Chunks are small: most pages have few elements, and fresh memory costs
/// more time than they do.
template <class T, std::size_t chunkSize = 256>
class Chunks {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    explicit Chunks(ArtworkBudget& budget) : budget_(&budget) {}
    Chunks(const Chunks&) = delete;
    Chunks& operator=(const Chunks&) = delete;
    ~Chunks() { dropChunks(0); }

    std::size_t size() const { return size_; }

    T& operator[](std::size_t index) { return chunks_[index / chunkSize][index % chunkSize]; }
    const T& operator[](std::size_t index) const {
        return chunks_[index / chunkSize][index % chunkSize];
    }

    /// The elements from `first` on that lie in one piece, `count` at most.
    std::span<T> block(std::size_t first, std::size_t count) {
        const std::size_t within = first % chunkSize;
        return {chunks_[first / chunkSize].get() + within, std::min(count, chunkSize - within)};
    }
    std::span<const T> block(std::size_t first, std::size_t count) const {
        const std::size_t within = first % chunkSize;
        return {chunks_[first / chunkSize].get() + within, std::min(count, chunkSize - within)};
    }

    /// New elements have no set value. Throws `ArtworkError` past the budget; the size then stays.
    void resize(std::size_t size) {
        const std::size_t wanted = (size + chunkSize - 1) / chunkSize;
        if (wanted > chunks_.size()) {
            growChunks(wanted);
        } else if (wanted + spareChunks < chunks_.size()) {
            dropChunks(wanted + spareChunks);
        }
        size_ = size;
    }

private:
    static constexpr std::int64_t chunkBytes =
        static_cast<std::int64_t>(chunkSize * sizeof(T) + sizeof(std::unique_ptr<T[]>));

    /// Kept when the array shrinks, so that a size that swings around a chunk's end costs nothing.
    static constexpr std::size_t spareChunks = 1;

    void dropChunks(std::size_t wanted) {
        budget_->discharge(static_cast<std::int64_t>(chunks_.size() - wanted) * chunkBytes);
        chunks_.resize(wanted);
    }

    void growChunks(std::size_t wanted) {
        const std::size_t before = chunks_.size();
        budget_->charge(static_cast<std::int64_t>(wanted - before) * chunkBytes);
        try {
            while (chunks_.size() < wanted) {
                chunks_.push_back(std::make_unique_for_overwrite<T[]>(chunkSize));
            }
        } catch (...) {
            chunks_.resize(before);
            budget_->discharge(static_cast<std::int64_t>(wanted - before) * chunkBytes);
            throw;
        }
    }

    ArtworkBudget* budget_;
    std::vector<std::unique_ptr<T[]>> chunks_;
    std::size_t size_ = 0;
};

} // namespace corvane
