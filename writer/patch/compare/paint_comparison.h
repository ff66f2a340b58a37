// Whether two gradients or patterns paint the same, by what they are and not by who holds them.
#pragma once

#include "host/gradient.h"
#include "host/matrix.h"

#include <map>
#include <utility>

namespace corvane {

class PaintComparison {
public:
    /// Of two paints of the same kind, the first one moved so on the artboard. What editors do to
    /// numbers is no difference.
    bool same(const Colour& was, const Colour& is, const RealMatrix& movement = {});

private:
    bool sameGradient(PaintSource was, PaintSource is, const RealMatrix& movement) const;
    bool samePattern(PaintSource was, PaintSource is, const RealMatrix& movement);
    bool sameTile(Art was, Art is);

    /// Tiles that were compared; art of tiles does not change.
    std::map<std::pair<Art, Art>, bool> tiles_;
};

} // namespace corvane
