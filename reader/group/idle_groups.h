// Groups that only get in a person's way: what a `q` and its `Q` left around a single object, or
// around all that a layer, a form or a clip holds. A program writes those for the state's sake.
#pragma once

#include "host/artwork.h"

#include <vector>

namespace corvane {

class IdleGroups {
public:
    /// A group that a level left, after those in it.
    void note(Art group) { groups_.push_back(group); }
    /// What holds art and is no such group: clipped, or tied to a layer.
    void noteHolder(Art holder) { holders_.push_back(holder); }
    /// It was disposed of.
    void forget(Art art);
    void forget(std::vector<Art> all);

    /// Puts what idle groups hold in their place; `layer` is the outermost holder. Nothing was
    /// noted afterwards.
    void dissolve(Art layer);

private:
    void dissolveSole(Art holder);

    std::vector<Art> groups_;
    std::vector<Art> holders_;
};

} // namespace corvane
