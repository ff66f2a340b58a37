// Whether a save kept what it had to keep of a page's content.
#pragma once

#include "fuzz/support/artwork_edit.h"
#include "fuzz/support/page_operations.h"

#include <vector>

namespace corvane::fuzz {

/// What was edited in a page that was saved.
struct EditedPage {
    SourceSet sources;     ///< of all art that the page made
    SourceSet touched;     ///< of those, what an edit touched
    bool hasMoved = false; ///< objects that no edit touched were written at another place
};

/// Requires every operator of the old content in the new content, in its order, but for paths and
/// text that were edited and for Q without q. Where untouched objects moved, their operators may
/// stand anywhere.
void requireKept(const std::vector<PageOperation>& old, const std::vector<PageOperation>& is,
                 const EditedPage& edited);

} // namespace corvane::fuzz
