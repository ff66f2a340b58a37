// Art still to be visited: groups are opened one after the other, and what they hold comes from the
// back to the front.
//
// The host tells only what comes next in a list, so each list is walked once, to its end, and then
// taken from there: what `lastChild` and `prevChild` would do by walking anew for each child.
#pragma once

#include "host/artwork.h"
#include "writer/art/charged_list.h"

#include <cstddef>
#include <cstdint>

namespace corvane {

struct ArtStep {
    enum class What : std::uint8_t {
        art,   ///< visit it
        end,   ///< a group ends
        leave, ///< a group ends whose graphics state is left with it
    };
    What what = What::art;
    Art art = Art::null;
};

class ArtStack {
public:
    /// Visits `art` next.
    void push(Art art);
    /// Opens a group: visits `first` and what lies behind it, all before anything else, and then
    /// ends the group with `end`. Groups deeper than the artwork may have raise `structure`.
    void enter(Art first, ArtStep::What end);
    /// Takes the next step; false: there is none.
    bool next(ArtStep& step);

    std::int32_t depth() const { return depth_; }
    /// Steps that are left.
    std::size_t size() const { return steps_.size(); }

private:
    ChargedList<ArtStep> steps_;
    std::int32_t depth_ = 0; ///< of open groups
};

} // namespace corvane
