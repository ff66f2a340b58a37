// Transparency groups: what takes several paintings to draw and is one thing under the transparency
// in force.
#pragma once

#include "host/artwork.h"
#include "reader/document/cache.h"
#include "runtime/memory.h"
#include "writer/page/resource_registry.h"
#include "writer/paint/new_paints.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// A form that is to be written (PDF Reference, 4.9 and 7.5.5).
struct DrawnGroup {
    std::int32_t number = 0;
    std::string text; ///< its content
    Rect box;
    std::unique_ptr<ResourceRegistry> resources; ///< that it names
};

class DrawnGroups {
public:
    DrawnGroups(NewPaints& paints, ResourceRegistry& resources)
        : paints_(&paints), resources_(&resources) {}

    /// Draws a path or compound path in a form of its own; its name.
    std::string_view add(Art art);

    std::span<const DrawnGroup> groups() const { return groups_; }

private:
    NewPaints* paints_;
    ResourceRegistry* resources_;
    std::vector<DrawnGroup> groups_;
    std::int64_t textBytes_ = 0;
    ZoneCharge charge_; // of the texts
};

/// Writes a form to the cache's output.
void writeGroup(DocumentCache& cache, const DrawnGroup& group);

} // namespace corvane
