// An element whose children are being read.
#pragma once

#include "app/svg/extent.h"
#include "app/svg/read/shape_builder.h"
#include "app/svg/read/style/computed_style.h"

#include <optional>
#include <pugixml.hpp>
#include <string_view>
#include <vector>

namespace corvane {

/// A clip that shapes name themselves. Shapes in a row that name the same clip share its group.
struct SharedClip {
    pugi::xml_node clip;
    RealMatrix matrix;
    Art group = Art::null;
    Art art = Art::null; ///< of the clip
    Extent bounds;
    bool rectangle = false;
};

/// A clip of a group, made when all that it clips is there.
struct LateClip {
    enum class Kind {
        none,
        unseen,   ///< path data of a rectangle, to be kept as long as it cuts nothing
        viewport, ///< a rectangle, needed only where it cuts something
    };
    Kind kind = Kind::none;
    std::string_view data;
    FillRule rule = FillRule::nonzero;
    std::optional<ArtSource> source;
    UserBox box;
    RealMatrix matrix; ///< of data or box to the art
};

/// A `clipPath` that fits the box of what is clipped.
struct BoxClip {
    Art group = Art::null;
    pugi::xml_node clip;
};

/// How an element is laid over what is behind it.
struct ElementLook {
    Appearance appearance;
    std::string_view mask; ///< id; empty: none
    RealMatrix matrix;     ///< from the user space of the mask to the art, as the next
    Viewport viewport;
    bool isPlain() const { return appearance == Appearance() && mask.empty(); }
};

struct Frame {
    pugi::xml_node next;      ///< the child to be read
    bool onlyNext = false;    ///< and no other
    bool holdsLayers = false; ///< children may be layers
    bool isUse = false;

    ComputedStyle style;
    RealMatrix matrix; ///< from the children's user space to the art
    Viewport viewport;
    std::string_view width; ///< of a `use`: the size of a symbol
    std::string_view height;

    /// Where the children's art goes; null: into the layer of loose art.
    Art group = Art::null;
    Art clip = Art::null;      ///< the group's, in front of all children
    Art made = Art::null;      ///< the outermost group made for the element; not a layer's
    Art outermost = Art::null; ///< the same, or the layer's
    ElementLook look;          ///< of that
    bool passesLook = false;   ///< it is that of the one child
    std::vector<SharedClip> shared;
    LateClip late;
    std::vector<BoxClip> boxClips;
    std::string_view annotations; ///< of the layer of annotations: those that it had

    Extent visible = Extent::everything(); ///< what clips around the children let through, at most
    Extent clipBounds = Extent::everything();
    Extent content;        ///< around what was painted so far, where it is `measured`
    bool measured = false; ///< for a late clip, here or further out
    UserBox box;           ///< in the art, around all geometry so far, where it is `boxed`
    bool boxed = false;
    bool mixesBefore = false; ///< something in front of the element blends with what is behind both
};

} // namespace corvane
