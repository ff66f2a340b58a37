// A path style as presentation attributes, with data- attributes for what those cannot say.
#pragma once

#include "app/svg/paint/paint_servers.h"
#include "app/svg/sink.h"
#include "host/artwork.h"

#include <cstdint>

namespace corvane {

/// The stroke width that is drawn, points: that of a width of 0 (the thinnest line that a device
/// draws) is a quarter point, as fine as print shows; a negative one counts as positive.
std::int64_t visibleWidth(const PathStyle&);

/// The pen of the stroke that is drawn. One that is not round is a transform of the element.
Pen drawnPen(const PathStyle&);

/// The attributes of a path that is drawn: only what differs from SVG's defaults (and from the
/// miter limit of 10 that the root sets). Of a paint that is not in use nothing is written.
/// `stretch`: by how much the element's own transform enlarges lengths.
void writePaintedStyle(TextOutput&, const PathStyle&, const PaintServers&, double stretch = 1);

/// The attributes of a guide: not painted, marked as a guide.
void writeGuideStyle(TextOutput&);

/// The attributes of a path inside a `clipPath`, where a paint that is not in use is left out.
void writeClipStyle(TextOutput&, const PathStyle&, const PaintServers&);

} // namespace corvane
