// What a person may do to artwork between opening a page and saving it.
#pragma once

#include "app/artwork/document.h"

#include <cstdint>
#include <functional>
#include <set>
#include <utility>
#include <vector>

namespace corvane::fuzz {

/// A choice, from 0 to the limit less 1.
using Choose = std::function<std::uint32_t(std::uint32_t limit)>;

/// The first byte of what made art, and the byte behind it.
using SourceBytes = std::pair<std::int64_t, std::int64_t>;
using SourceSet = std::set<SourceBytes>;

/// The sources of all paths and compound paths, clips too.
SourceSet allSources(const Document&);

/// Paths and compound paths that are painted, from the front to the back.
std::vector<Art> paintedArt(const Document&);

/// Up to five edits in a row; the sources of all art that they touched, and of the clips around it.
SourceSet editArtwork(Document&, const Choose&);

} // namespace corvane::fuzz
