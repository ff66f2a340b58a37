// What blends within clips. An element that is clipped is painted apart from what is behind it (CSS
// Masking 1, 5.1), and so is a group: only the outermost of them can say how all of it is mixed.
#include "app/svg/markup.h"
#include "app/svg/subpaths.h"
#include "app/svg/tree/tree_writer.h"

#include <utility>

namespace corvane {

namespace {

/// Clips that are said again for each thing that blends within all of them.
constexpr std::size_t mostShared = 8;

} // namespace

/// What a group clips that is there for nothing else, where that is one thing; or null.
Art TreeWriter::onlyPart(Art group) const {
    const Art clip = clipOf(document_, group);
    const Art part = clip == Art::null ? Art::null : document_.nextSibling(clip);
    const bool isPlain = part != Art::null && part == document_.lastChild(group) &&
                         document_.appearance(group) == Appearance{} && !hasOrdinal(group) &&
                         !document_.form(group) &&
                         document_.groupLayer(group) == ContentLayer::null;
    return isPlain ? part : Art::null;
}

/// The art that says how all of this is mixed with what is behind it: itself, or the only thing
/// within it; null where it does not blend, or in several ways.
Art TreeWriter::blendingPart(Art art) const {
    while (art != Art::null && document_.appearance(art).blend == BlendMode::normal) {
        art = document_.kind(art) == ArtKind::group ? onlyPart(art) : Art::null;
    }
    return art;
}

/// Whether several things in a group, or some, are to be mixed with what is behind it. Not within
/// an object, nor where elements would stand too deep.
bool TreeWriter::isMixedOut(Art group, const GroupSurvey& survey) const {
    if (!survey.blends || levels_.empty()) {
        return false;
    }
    const Level& around = levels_.back();
    const bool isForm = document_.form(group).has_value();
    const bool isInObject = around.isObject || (hasOrdinal(group) && !isForm);
    const bool hasRoom = around.shared.size() < mostShared &&
                         around.depth + static_cast<int>(mostShared) < deepestGroup;
    return !isInObject && !(isForm && !around.shared.empty()) && hasRoom &&
           !paintsApart(document_.appearance(group)) && blendingPart(group) == Art::null;
}

/// The look that the element of art says: a group has the blending of what is in it, and that of an
/// element around it is not said again.
Appearance TreeWriter::lookOf(Art art) {
    Appearance look = document_.appearance(art);
    const Art part = blendingPart(art);
    if (part != Art::null) {
        const bool isSaid = std::exchange(blended_, part) == part;
        look.blend = isSaid ? BlendMode::normal : document_.appearance(part).blend;
    }
    return look;
}

/// Where clips are shared by what stands in a group, this opens the elements that carry them for
/// the art that comes next: for all art in a row that does not blend, or for one that does.
void TreeWriter::placeInRun(Art art) {
    Level& level = levels_.back();
    const SvgObject object = svgObject(document_, art);
    const bool isGroup = object == SvgObject::group;
    if (level.shared.empty() || object == SvgObject::none || (isGroup && !survey_[group_].drawn)) {
        return;
    }
    const Art part = blendingPart(art);
    const bool isMixed = isGroup && isMixedOut(art, survey_[group_]);
    const bool goesOn = level.run != 0 && !level.isBlendingRun && part == Art::null && !isMixed;
    if (goesOn) {
        return;
    }
    leaveRun(level);
    if (isMixed) {
        return;
    }
    for (const std::uint32_t clip : level.shared) {
        writeIndent(out_, level.depth);
        out_.text("<g");
        writeId("g", ++numbers_.groups);
        if (part != Art::null && level.run == 0) {
            writeLook({.blend = document_.appearance(part).blend});
        }
        writeReference(clip);
        out_.text(">");
        ++level.depth;
        ++level.run;
    }
    level.isBlendingRun = part != Art::null;
    blended_ = part;
}

void TreeWriter::leaveRun(Level& level) {
    for (; level.run > 0; --level.run) {
        --level.depth;
        writeIndent(out_, level.depth);
        out_.text("</g>");
    }
}

} // namespace corvane
