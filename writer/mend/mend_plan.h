// Mending a file: what is appended so that others read it without searching.
#pragma once

#include "objects/object_identifier.h"
#include "reader/document/cache.h"
#include "writer/mend/page_nodes.h"
#include "writer/mend/sound_copy.h"
#include "writer/mend/survey.h"

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

namespace corvane {

struct MendPlan {
    bool isWhole = false;                 ///< the cross-reference is made anew
    std::vector<ObjectIdentifier> copies; ///< damaged objects that are written again, ascending
    PageNodes nodes;
    ObjectIdentifier catalog;       ///< where it is written; else 0
    bool isNewCatalog = false;      ///< the file had none
    std::set<std::int32_t> leftOut; ///< numbers that a whole section does not name
    MendCounts mended{};            ///< what all this mends, by kind
    bool isNothing = true;
};

/// Raises `repairedFile`, with a reason, where nothing that is appended can mend the file.
void refuseUnmendable(DocumentCache& cache);

/// Whether the cross-reference has to be made anew; not in a file without a page.
bool needsWhole(DocumentCache& cache, const Survey& survey);

/// Settles what mends the file that was looked at, after the numbers of all its objects were
/// reserved. In a file without a page there is nothing to mend for. Raises `repairedFile` where a
/// page cannot be named.
MendPlan planMend(DocumentCache& cache, const Survey& survey);

/// Takes an object out of the plan that is written otherwise; what it gets as a page, if it gets
/// something.
std::optional<PageNode> takeFrom(MendPlan& mend, std::int32_t number);

/// What the catalog says otherwise then; nothing where it stays.
CopyChanges catalogChanges(const MendPlan& mend);

/// Writes the new copies to the cache's output, but for the catalog.
void writeMend(DocumentCache& cache, const MendPlan& mend);

} // namespace corvane
