// The values of an element's properties, inherited ones included.
#pragma once

#include "app/svg/paint/colour.h"
#include "app/svg/read/paint/paint_twin.h"
#include "app/svg/read/style/attributes.h"
#include "app/svg/read/style/declarations.h"
#include "app/svg/read/tally.h"
#include "app/svg/read/text/letter_case.h"
#include "app/svg/read/values/length.h"
#include "host/appearance.h"
#include "host/artwork.h"
#include "host/text.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace corvane {

struct Decoration;

/// The value of `fill` or `stroke`.
struct PaintValue {
    enum class Kind : std::uint8_t { none, colour, server };
    Kind kind = Kind::none;
    bool isCurrent = false;    ///< `colour` is what `color` says, where it is inherited too
    bool fallsBack = false;    ///< a missing server is replaced by `colour`, not by none
    bool saysFallback = false; ///< it is said what replaces it, perhaps none
    /// The paint of what uses or bears the element; resolved by where that is known.
    enum class Context : std::uint8_t { none, fill, stroke };
    Context context = Context::none;
    ScreenColour colour = {};     ///< the colour, or what is seen instead of the server
    double alpha = 1;             ///< of the colour
    std::string_view server = {}; ///< id of a gradient or pattern
    friend constexpr bool operator==(const PaintValue&, const PaintValue&) = default;
};

/// What `transform` says of one element, as the file has it.
struct OwnTransform {
    std::string_view functions; ///< empty: none
    bool isCss = false;         ///< said in a style, where numbers have units
    std::string_view origin;    ///< empty: 0,0
    bool originIsCss = false;
};

/// What is painted of a shape, from the back to the front.
enum class Coat : std::uint8_t { fill, stroke, markers };
inline constexpr std::array<Coat, 3> usualCoats{Coat::fill, Coat::stroke, Coat::markers};

/// What `unicode-bidi` makes of the order of an element's letters.
enum class Bidi : std::uint8_t { none, embedded, overridden };

/// Lengths are user units of the element that says them; so a use in another scale cannot change
/// what is inherited.
struct ComputedStyle {
    // Inherited.
    PaintValue fill{.kind = PaintValue::Kind::colour};
    PaintValue stroke;
    PaintTwin fillTwin;
    PaintTwin strokeTwin;
    ScreenColour colour;    ///< "currentColor"
    double colourAlpha = 1; ///< of that
    double fillOpacity = 1;
    double strokeOpacity = 1;
    double strokeWidth = 1;
    double dashOffset = 0;
    double miterLimit = 4;
    double fontSize = 16;
    std::string_view families; ///< as `font-family` lists them; empty: none
    double letterSpacing = 0;
    double wordSpacing = 0;
    std::int16_t fontWeight = 400;
    bool italic = false;
    LetterCase letterCase = LetterCase::asTyped;
    TextAnchor anchor = TextAnchor::start;
    bool rightToLeft = false; ///< `direction`
    bool vertical = false;
    bool upright = false; ///< all letters of vertical text, not only those that always are
    bool keepsBlanks = false;
    bool keepsLines = false;                      ///< line ends are
    std::shared_ptr<const Decoration> decoration; ///< lines along letters; null: none
    double baseline = 0;     ///< which one stands on the line: its height in ems
    std::string_view dashes; ///< empty: none
    Viewport viewport;       ///< of the element that gave the dashes
    std::int32_t cap = 0;    ///< as in `PathStyle`
    std::int32_t join = 0;
    FillRule fillRule = FillRule::nonzero;
    FillRule clipRule = FillRule::nonzero;
    bool smoothImages = true; ///< pixels run into one another where they are enlarged
    bool turnsImages = true;  ///< as a camera says how it was held
    std::array<Coat, 3> coats = usualCoats;
    std::string_view markerStart; ///< ids; empty: none
    std::string_view markerMid;
    std::string_view markerEnd;
    bool linearLight = false; ///< colours are mixed, and light is weighed, in linear light
    bool visible = true;
    bool transparent = false; ///< the element or one around it has no opacity at all

    // Of the element alone.
    bool displayed = true;
    bool overflows = false;
    OwnTransform transform;
    bool keepsWidth = false;     ///< lines are as wide as said, in pixels of the page
    std::string_view background; ///< a colour, or what else CSS paints behind a root
    double baselineShift = 0;    ///< up
    Bidi bidi = Bidi::none;
    std::string_view flow; ///< the property that has text broken into lines; empty: none
    bool saysFill = false; ///< the element itself has the property
    bool saysStroke = false;
    std::string_view clipPath; ///< id of the clip; empty: none
    Appearance appearance;     ///< opacity, blending and isolation
    std::string_view mask;     ///< id of the mask; empty: none
    bool masksByAlpha = false; ///< of a mask: not by its light
};

/// The style of an element within `outer`; `declared` holds what attributes and sheets say. What
/// cannot be held (filters and their like) is counted.
ComputedStyle computeStyle(const ComputedStyle& outer, const Declared& declared,
                           const Attributes& attributes, const Viewport& viewport, Tally& tally);

} // namespace corvane
