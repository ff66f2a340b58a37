// The version of PDF that a save needs: the one place that knows which feature came with which.
//
// What is written notes its features; the catalog then names the version where the file's is older.
#pragma once

#include "reader/document/cache.h"

#include <optional>
#include <string>

namespace corvane {

/// PDF Reference, sixth edition: the version history of each feature.
enum class Feature {
    flate,
    compositeFont,
    separation,
    compactFont, ///< a program of CFF
    shading,
    profile,      ///< a space of a colour profile, or of several inks
    transparency, ///< opacity, blend modes, soft masks, transparency groups
    maskedImage,  ///< SMask
    deepImage,    ///< samples of 16 bits
    optionalContent,
};

/// Forgets what was noted; a save begins.
void openNeededVersion();
void needVersion(Feature feature);

/// What the catalog is to name, "1.5": what is needed, where that is later than what header and
/// catalog say. Nothing where the file's own version is enough.
std::optional<std::string> raisedVersion(DocumentCache& cache);

} // namespace corvane
