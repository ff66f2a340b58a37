#include "writer/art/art_stack.h"

#include "reader/content/art.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

namespace corvane {

void ArtStack::push(Art art) {
    steps_.push({ArtStep::What::art, art});
}

void ArtStack::enter(Art first, ArtStep::What end) {
    if (depth_ > budget::artNesting) {
        failException(Exception::structure);
    }
    ++depth_;
    steps_.push({end, Art::null});
    for (Art art = first; art != Art::null; art = nextSibling(art)) {
        push(art);
    }
}

bool ArtStack::next(ArtStep& step) {
    if (steps_.empty()) {
        return false;
    }
    step = steps_.pop();
    if (step.what != ArtStep::What::art) {
        --depth_;
    }
    return true;
}

} // namespace corvane
