// What a person, or an editor, may do to a text object.
#pragma once

#include "app/artwork/document.h"
#include "fuzz/support/artwork_edit.h"

#include <cstdint>

namespace corvane::fuzz {

/// Of art whose marks an editor dropped: of no content.
inline constexpr ArtSource lostSource{
    .start = std::int64_t{1} << 40, .end = (std::int64_t{1} << 40) + 1, .ordinal = 0};

/// Edits make the text anew in its place, as when it is read from a file.
class TextEdit {
public:
    TextEdit(Document& document, Art text) : document_(document), text_(text) {}

    /// Paint, size, spacing or letters of all runs, or what they are known by.
    void edit(const Choose& choose);
    void loseSources();

private:
    template <class Change>
    void remake(Change change);
    void joinRuns(std::uint32_t much);

    Document& document_;
    Art text_;
};

} // namespace corvane::fuzz
