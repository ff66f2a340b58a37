// Art still to be visited: groups are opened one after the other, and what they hold comes from the
// back to the front.
//
// The host tells only the next element of a list. So each list is walked once and then taken from
// its end; `lastChild` and `prevChild` would walk it anew for each child.
#pragma once

#include "host/artwork.h"
#include "runtime/charged_list.h"

#include <cstddef>
#include <cstdint>

namespace corvane {

struct ArtStep {
    enum class What : std::uint8_t {
        art,   ///< visit it
        end,   ///< a group ends
        leave, ///< a group ends, and its graphics state with it
        show,  ///< what shows with a layer ends
    };
    What what = What::art;
    Art art = Art::null;
};

class ArtStack {
public:
    /// Visits `art` next.
    void push(Art art);
    /// Opens a group: visits `first` and what lies behind it, all before anything else, and then
    /// ends the group with `end`. Groups nested deeper than artwork may be raise `structure`.
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
