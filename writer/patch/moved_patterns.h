// Copies of patterns for objects that were moved: a pattern lies on the page, not on the object.
#pragma once

#include "host/matrix.h"
#include "reader/document/cache.h"
#include "writer/page/carried_entries.h"
#include "writer/page/resource_registry.h"
#include "writer/patch/compare/movement.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

/// A copy that is to be written.
struct MovedPattern {
    std::int32_t number = 0;
    CarriedEntries entries; ///< all but its matrix, and the length of its data
    RealMatrix matrix;
    ObjectOwner stream; ///< of a tiling pattern, whose data are copied; otherwise empty
};

class MovedPatterns {
public:
    /// Of a content that looks up names in `names`, and from whose own space, in which its patterns
    /// lie, that matrix leads to the artboard.
    MovedPatterns(DocumentCache& cache, const Object& names, const RealMatrix& toArtboard,
                  ResourceRegistry& resources)
        : cache_(cache), names_(names), toArtboard_(toArtboard), resources_(resources) {}

    /// The name of a copy of that pattern, moved so on the artboard. The name is as the content
    /// writes it. A pattern that is no indirect object raises `unpatchable`.
    std::string_view add(std::string_view name, const RealMatrix& movement);

    std::vector<MovedPattern> take() { return std::move(copies_); }

private:
    std::int32_t copy(const std::string& name, const RealMatrix& movement);

    DocumentCache& cache_;
    const Object& names_;
    RealMatrix toArtboard_;
    ResourceRegistry& resources_;
    std::map<std::pair<std::string, MovementKey>, std::int32_t> known_; // numbers of copies
    std::vector<MovedPattern> copies_;
};

/// Writes a copy to the cache's output.
void writePattern(DocumentCache& cache, const MovedPattern& pattern);

} // namespace corvane
