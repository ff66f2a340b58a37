#include "writer/patch/place/inserted_unit.h"

#include "runtime/exception.h"
#include "writer/patch/gathered_state.h"
#include "writer/patch/place/trace_links.h"

#include <algorithm>

namespace corvane {

namespace {

EditedIndex endOfUnit(EditedIndex first, const EditedArtwork& artwork) {
    const EditedIndex whole = artwork.wholeAround(artwork.objects[first]);
    EditedIndex end = first + 1;
    while (whole != 0 && end < artwork.objects.size() &&
           artwork.wholeAround(artwork.objects[end]) == whole) {
        ++end;
    }
    return end;
}

bool isTextual(const EditedObject& object) {
    return object.kind == ArtKind::text || object.kind == ArtKind::group;
}

FormerPlace formerPlace(const ContentTrace& trace, PaintedIndex source, GatheredState& state) {
    const Surroundings& own = eventOf(trace, source).behind;
    return {.mark = own.mark,
            .clip = own.clip,
            .hiddenClips = hiddenClips(trace, own.clip),
            .roles = state.rolesUpTo(own.setter),
            .latest = trace.painted()[source].event};
}

void join(FormerPlace& all, const FormerPlace& one, const ContentTrace& trace) {
    if (all.hiddenClips != one.hiddenClips) {
        failException(Exception::unpatchable);
    }
    all.mark = commonMark(trace, all.mark, one.mark);
    all.clip = commonClip(trace, all.clip, one.clip);
    all.roles &= one.roles;
    all.latest = std::max(all.latest, one.latest);
}

} // namespace

InsertedUnit unitFrom(EditedIndex first, const BaseContent& base, const EditedArtwork& artwork,
                      const Matching& matching, GatheredState& state) {
    const EditedIndex whole = artwork.wholeAround(artwork.objects[first]);
    InsertedUnit unit{.first = first,
                      .end = endOfUnit(first, artwork),
                      .group =
                          whole != 0 ? artwork.groups[whole].outer : artwork.objects[first].group};
    for (EditedIndex i = first; i < unit.end; ++i) {
        unit.isText = unit.isText || isTextual(artwork.objects[i]);
        const PaintedIndex source = matching.objects[i].source;
        if (source == noSource) {
            continue;
        }
        const FormerPlace own = formerPlace(base.trace, source, state);
        if (unit.former) {
            join(*unit.former, own, base.trace);
        } else {
            unit.former = own;
        }
    }
    return unit;
}

} // namespace corvane
