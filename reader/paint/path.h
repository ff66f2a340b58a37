// Building paths: each subpath becomes one path of the host, gathered in a compound path until a
// painting operator ends it. Points are transformed when a segment is made, and again where the
// space changes before the path ends.
#pragma once

#include "host/artwork.h"
#include "objects/stack.h"
#include "runtime/memory.h"

#include <cstdint>
#include <vector>

namespace corvane {

struct Interpreter;

/// The path under construction: open from the first `m` or `re` to the operator that paints it.
struct PathConstruction {
    Art compound = Art::null;      ///< collects the subpaths; null: no path is open
    Art holder = Art::null;        ///< where that was made
    Art object = Art::null;        ///< the open subpath
    std::vector<Segment> segments; ///< of the open subpath; the host gets them when it ends
    ZoneCharge charge;             ///< of `segments`
    RealPoint start;               ///< user space; where the next subpath begins without an `m`
    std::int64_t firstByte = 0;    ///< of the operator that began the path
    std::int32_t painted = 0;      ///< objects of the content when it began
    bool hidesFill = false;        ///< it is filled, with what artwork cannot hold
    bool hidesStroke = false;      ///< in the same way
};

/// Disposes of the art of a path that was never painted.
void dropPath(Interpreter& interpreter);

/// Starts a path, unless one is open. A path is open until `endPath`. Without an open path, the
/// functions below raise `context`.
void beginPath(Interpreter& interpreter);
void movetoPath(Interpreter& interpreter, RealPoint point);
/// Without an open subpath: `context`; in the extended profile one begins at the current point.
void linetoPath(Interpreter& interpreter, RealPoint point);
void curvetoPath(Interpreter& interpreter, RealPoint control1, RealPoint control2, RealPoint point);
/// Closes the open subpath, if there is one: an end that equals the beginning is merged with it.
void closetoPath(Interpreter& interpreter);
/// Styles the path, makes it a clip where asked, and lets go of it.
void endPath(Interpreter& interpreter);

void fillPath(Interpreter& interpreter);
/// As `fillPath`, by the even-odd rule; the original profile warns that it is not kept.
void eofillPath(Interpreter& interpreter);
void strokePath(Interpreter& interpreter);
void clipPath(Interpreter& interpreter);
void eoclipPath(Interpreter& interpreter);

} // namespace corvane
