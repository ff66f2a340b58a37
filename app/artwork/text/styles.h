// The path styles of a document, each kept once.
#pragma once

#include "app/artwork/budget.h"
#include "app/artwork/storage/chunks.h"
#include "app/artwork/storage/number_index.h"
#include "host/artwork.h"

#include <cstddef>
#include <cstdint>

namespace corvane {

/// Styles are numbered from 0, which is the default style, and stay for the document's life.
class StyleTable {
public:
    explicit StyleTable(ArtworkBudget& budget);
    StyleTable(const StyleTable&) = delete;
    StyleTable& operator=(const StyleTable&) = delete;

    /// The number of a style equal to this one. Throws `ArtworkError` past the budget.
    std::uint32_t add(const PathStyle&);
    const PathStyle& operator[](std::uint32_t number) const { return styles_[number]; }
    std::size_t size() const { return styles_.size(); }

private:
    Chunks<PathStyle> styles_;
    NumberIndex index_;
    std::uint32_t latest_ = 0; ///< most paths are painted as the path before them
};

} // namespace corvane
