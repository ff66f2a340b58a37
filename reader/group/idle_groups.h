// Groups that only get in a person's way: what a `q` and its `Q` left around a single object, or
// around all that a layer, a form or a clip holds. A program writes those for the state's sake.
#pragma once

#include "host/artwork.h"

#include <vector>

namespace corvane {

class IdleGroups {
public:
    /// A group that a level left, after those in it.
    void note(Art group) { noted_.push_back({group, true}); }
    /// What holds art and is no such group: clipped, or tied to a layer. Nothing is made in it any
    /// more.
    void noteHolder(Art holder) { noted_.push_back({holder, false}); }
    /// They were disposed of.
    void forget(Art art);
    void forget(std::vector<Art> all);

    /// Puts what idle groups hold in their place; `layer` is the outermost holder.
    void dissolve(Art layer);

private:
    struct Noted {
        Art art = Art::null;
        bool isPlain = false;
    };

    std::vector<Noted> noted_;
};

} // namespace corvane
