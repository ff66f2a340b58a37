// The path that the letters of a `textPath` stand on.
#pragma once

#include "app/svg/read/context.h"
#include "app/svg/read/style/attributes.h"
#include "app/svg/read/values/length.h"
#include "host/matrix.h"

#include <optional>
#include <vector>

namespace corvane {

/// In the space of the artboard.
struct TextPath {
    std::vector<Segment> segments; ///< two or more
    bool isClosed = false;
    double start = 0; ///< where its letters begin, along the path
};

/// The path that a `textPath` names, through `toArt` from the user space of its letters. None where
/// there is no path; that and what cannot be held of it is counted.
std::optional<TextPath> readTextPath(const Attributes& attributes, const RealMatrix& toArt,
                                     const LengthContext& lengths, ReadingContext& context);

} // namespace corvane
