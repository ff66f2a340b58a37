// The path styles of a document, each kept once.
#pragma once

#include "app/artwork/budget.h"
#include "app/artwork/chunks.h"
#include "host/artwork.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvane {

/// Styles are numbered from 0, which is the default style, and stay for the document's life.
class StyleTable {
public:
    explicit StyleTable(ArtworkBudget& budget);
    ~StyleTable();
    StyleTable(const StyleTable&) = delete;
    StyleTable& operator=(const StyleTable&) = delete;

    /// The number of a style equal to this one. Throws `ArtworkError` past the budget.
    std::uint32_t add(const PathStyle&);
    const PathStyle& operator[](std::uint32_t number) const { return styles_[number]; }
    std::size_t size() const { return styles_.size(); }

private:
    std::size_t place(const PathStyle&) const;
    void grow();

    ArtworkBudget* budget_;
    Chunks<PathStyle, 256> styles_;
    /// Open addressing by hash: a style's number plus 1, or 0; a power of two of them.
    std::vector<std::uint32_t> places_;
    std::uint32_t latest_ = 0; ///< most paths are painted as the path before them
};

} // namespace corvane
