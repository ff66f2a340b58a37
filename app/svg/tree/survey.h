// What the groups of a layer hold, found out before they are written.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/extent.h"
#include "app/svg/shape_extent.h"

#include <cstddef>
#include <vector>

namespace corvane {

/// What clips a group: its first child where the group is clipped, a shape or text; or null.
Art clipOf(const Document&, Art group);

struct GroupSurvey {
    bool drawn = false; ///< something is in it, at any depth, beside clips
    bool blends =
        false; ///< what it holds is mixed with what is behind it, if the group allows that
    /// Around what is painted in it, before its own clip cuts that. Known only within groups that a
    /// rectangle clips, at any depth; elsewhere everything.
    Extent content;
    ClipShape clip;
    std::size_t end = 0; ///< index just past the groups within it
};

/// Whether a group of this look is painted by itself first: what it holds mixes with nothing behind
/// it.
bool paintsApart(const Appearance&);

/// The groups from `top` (first) down, each before those within it, from the back to the front.
std::vector<GroupSurvey> surveyGroups(const Document&, Art top);

} // namespace corvane
