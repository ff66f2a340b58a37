// What the functions of the art walk share while a page's content is written.
#pragma once

#include "host/artwork.h"
#include "writer/art/content_text.h"
#include "writer/art/shadow.h"

#include <array>

namespace corvane {

struct Walk {
    explicit Walk(Filter& stream) : text(stream) {}

    ContentText text;
    Shadow shadow;
    /// Segments of a path come from the host in blocks of this many.
    std::array<Segment, 512> segments;
};

/// Writes q.
void enterWorks(Walk& walk);
/// Writes Q; what is in force then is not known.
void leaveWorks(Walk& walk);
/// Forgets what is in force.
void noneStyleWorks(Walk& walk);

} // namespace corvane
