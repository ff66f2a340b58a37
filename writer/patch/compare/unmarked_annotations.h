// Annotations of the artwork that an editor took the marks off, known again by what they show.
#pragma once

#include "writer/patch/base/base_reading.h"

#include <cstdint>
#include <map>
#include <unordered_set>

namespace corvane {

/// What tells annotations apart: their objects; of those without one their content, below 0.
std::int64_t annotationKey(const FormFacts& form);

/// By their keys.
using Annotations = std::map<std::int64_t, Art>;

/// The groups in `root` that are annotations.
Annotations annotationsIn(Art root);

struct UnmarkedAnnotations {
    std::unordered_set<std::int64_t> keys;
    std::unordered_set<Art> art; ///< that they are drawn with: no content of the page
};

/// Looks for the annotations of the base that the artwork does not name, or has nothing of, in all
/// that it draws. Groups may have gone or come, as long as the rest is the same and in one piece.
UnmarkedAnnotations findUnmarked(const BaseReading& base);

} // namespace corvane
