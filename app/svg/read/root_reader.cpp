#include "app/svg/read/root_reader.h"

#include "app/artwork/geometry/arithmetic.h"
#include "app/svg/read/style/declarations.h"
#include "app/svg/read/values/fixed_number.h"
#include "app/svg/read/values/number_list.h"
#include "app/svg/read/values/view_box.h"
#include "host/matrix.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

namespace corvane {

namespace {

/// What SVG leaves open: the area that a file without width and height fills.
constexpr double defaultWidth = 300;
constexpr double defaultHeight = 150;

/// Points by which a page may differ from what we wrote, for editors that count in other units.
constexpr double sameLength = .01;

template <class Number>
Number wholeNumber(std::string_view text, int base = 10) {
    Number number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number, base);
    return number;
}

/// 16 hexadecimal digits and nothing else.
std::optional<std::uint64_t> parseName(std::string_view text) {
    constexpr std::size_t digits = 16;
    std::uint64_t name = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, name, 16);
    const bool isName = text.size() == digits && read.ec == std::errc() && read.ptr == end;
    return isName ? std::optional(name) : std::nullopt;
}

Fixed fixedOf(double value) {
    return saturate(wideFixed(value));
}

/// "image:3 text:12". A count that cannot be read says at least that there is something.
std::map<std::string, std::int32_t, std::less<>> parseOmissions(std::string_view text) {
    std::map<std::string, std::int32_t, std::less<>> omitted;
    TextCursor cursor(text);
    while (!cursor.atEnd()) {
        TextCursor entry(cursor.takeUntil(' '));
        const std::string_view kind = entry.takeUntil(':');
        std::int32_t count = 1;
        const std::string_view digits = entry.rest();
        std::from_chars(digits.data(), digits.data() + digits.size(), count);
        if (!kind.empty() && count > 0) {
            omitted.insert_or_assign(std::string(kind), count);
        }
    }
    return omitted;
}

Box parseBox(std::string_view text) {
    std::array<double, 4> sides{};
    return parseNumbers(text, sides) ? Box{sides[0], sides[1], sides[2], sides[3]} : Box{};
}

double parseUserUnit(std::string_view text) {
    std::array<double, 1> unit{1};
    return !text.empty() && parseNumbers(text, unit) && unit[0] > 0 ? unit[0] : 1;
}

Provenance readProvenance(const Attributes& root) {
    Provenance from;
    from.sourceFile = root[Attribute::dataFile];
    from.page = std::max(0, wholeNumber<std::int32_t>(root[Attribute::dataPage]));
    from.artwork = parseName(root[Attribute::dataArtwork]);
    from.omitted = parseOmissions(root[Attribute::dataOmitted]);
    if (root.has(Attribute::dataDigest)) {
        PageIdentity& identity = from.identity.emplace();
        identity.digest = wholeNumber<std::uint64_t>(root[Attribute::dataDigest], 16);
        PageFacts& page = identity.page;
        page.page = from.page;
        TextCursor object(root[Attribute::dataObject]);
        page.objectNumber = wholeNumber<std::int32_t>(object.takeUntil(' '));
        page.generation = wholeNumber<std::int32_t>(object.rest());
        page.mediaBox = parseBox(root[Attribute::dataMediaBox]);
        page.rotate = wholeNumber<std::int32_t>(root[Attribute::dataRotate]);
        page.userUnit = parseUserUnit(root[Attribute::dataUserUnit]);
    }
    return from;
}

/// The area of the root on paper, in points of the artwork, and its user space.
struct PaperArea {
    double width = 0;
    double height = 0;
    RealMatrix matrix; ///< from user space, to points from the area's upper left, y down
    Viewport viewport;
};

/// A length of the root in points; that of the view box where it says none or a percentage.
double paperLength(std::string_view text, double otherwise) {
    const auto length = parseLength(text, Axis::other, {});
    if (!length || !(*length > 0) || text.find('%') != std::string_view::npos) {
        return otherwise;
    }
    return *length / pixelsPerPoint;
}

PaperArea paperArea(const Attributes& root, bool ours, double userUnit) {
    auto box = parseViewBox(root[Attribute::viewBox]);
    if (box && !(box->width > 0 && box->height > 0)) {
        box.reset();
    }
    // Where nothing else is said, a user unit is a point of ours, a pixel of others'.
    const double unit = ours ? userUnit : 1 / pixelsPerPoint;
    const std::string_view widthText = root[Attribute::width];
    const std::string_view heightText = root[Attribute::height];
    double width = paperLength(widthText, -1);
    double height = paperLength(heightText, -1);
    if (box) {
        // One side alone gives the other its length.
        const double known = width > 0    ? width / box->width
                             : height > 0 ? height / box->height
                                          : unit;
        width = width > 0 ? width : known * box->width;
        height = height > 0 ? height : known * box->height;
    } else {
        width = width > 0 ? width : defaultWidth * unit;
        height = height > 0 ? height : defaultHeight * unit;
    }
    PaperArea area;
    area.width = width / userUnit;
    area.height = height / userUnit;
    if (!box) {
        const bool unsized = ours && !root.has(Attribute::width);
        const double scale = unsized ? 1 : 1 / pixelsPerPoint / userUnit;
        area.matrix = {scale, 0, 0, scale, 0, 0};
        area.viewport = {area.width / scale, area.height / scale};
        return area;
    }
    // The size was rounded when it was written: a scale that nobody can see is none.
    if (std::abs(area.width - box->width) < sameLength / 10 &&
        std::abs(area.height - box->height) < sameLength / 10) {
        area.width = box->width;
        area.height = box->height;
    }
    area.matrix =
        viewBoxMatrix(*box, {0, 0, area.width, area.height}, root[Attribute::preserveAspectRatio]);
    area.viewport = {box->width, box->height};
    return area;
}

/// The area in the artwork's coordinates, where its user space begins at that corner of a page.
Rect areaOnPage(const PaperArea& area, double left, double top) {
    left -= area.matrix.tx;
    top += area.matrix.ty;
    return {fixedOf(left), fixedOf(top), fixedOf(left + area.width), fixedOf(top - area.height)};
}

/// Whether the area has the size of the bounds, and nothing moved it.
bool isAsWritten(const PaperArea& area, const Rect& bounds) {
    const auto same = [](double side, std::int64_t written) {
        return std::abs(side - static_cast<double>(written) / fixedOne) < sameLength;
    };
    return same(area.width, std::int64_t{bounds.right} - bounds.left) &&
           same(area.height, std::int64_t{bounds.top} - bounds.bottom) &&
           std::abs(area.matrix.tx) < sameLength && std::abs(area.matrix.ty) < sameLength;
}

/// Bounds as a file of ours says them; those of the area where it says none.
std::optional<Rect> writtenBounds(const Attributes& root, const PaperArea& area) {
    std::array<double, 4> sides{};
    if (!root.has(Attribute::dataBounds)) {
        const bool moved = area.matrix.tx != 0 || area.matrix.ty != 0;
        return moved ? std::nullopt
                     : std::optional(Rect{0, fixedOf(area.height), fixedOf(area.width), 0});
    }
    if (!parseNumbers(root[Attribute::dataBounds], sides)) {
        return std::nullopt;
    }
    const Rect bounds{fixedOf(sides[0]), fixedOf(sides[3]), fixedOf(sides[2]), fixedOf(sides[1])};
    // A page without area is written without a size.
    const std::int64_t width = std::int64_t{bounds.right} - bounds.left;
    const std::int64_t height = std::int64_t{bounds.top} - bounds.bottom;
    const bool unsized = (width <= 0 || height <= 0) && !root.has(Attribute::viewBox);
    return isAsWritten(area, bounds) || unsized ? std::optional(bounds) : std::nullopt;
}

ArtboardSize writtenArtboard(const Attributes& root) {
    std::array<double, 2> sides{};
    return parseNumbers(root[Attribute::dataArtboard], sides)
               ? ArtboardSize{fixedOf(sides[0]), fixedOf(sides[1])}
               : ArtboardSize{};
}

bool holds(const ArtboardSize& artboard, const Rect& bounds) {
    return (artboard.width == 0 && artboard.height == 0) ||
           (bounds.left >= 0 && bounds.bottom >= 0 && artboard.width >= bounds.right &&
            artboard.height >= bounds.top);
}

/// The area as a person resized it, in the artwork's coordinates: what stands on the page keeps its
/// place. Nothing where the file does not say where the area began.
std::optional<Rect> resizedBounds(const Attributes& root, const PaperArea& area) {
    std::array<double, 4> sides{};
    const ArtboardSize artboard = writtenArtboard(root);
    if (!parseNumbers(root[Attribute::dataBounds], sides)) {
        if (artboard.width <= 0 || artboard.height <= 0) {
            return std::nullopt;
        }
        sides = {0, 0, 0, static_cast<double>(artboard.height) / fixedOne};
    }
    return areaOnPage(area, sides[0], sides[3]);
}

/// What is seen of a page, and its artboard.
struct PageArea {
    Rect bounds;
    ArtboardSize artboard;
};

/// The page as a file of ours says it; `fallback` where it says nothing that can be used.
PageArea writtenArea(const Attributes& root, const PaperArea& area, Profile profile,
                     const PageArea& fallback) {
    const ArtboardSize writtenSize = writtenArtboard(root);
    if (!root.has(Attribute::viewBox) && !root.has(Attribute::width) &&
        !root.has(Attribute::dataBounds)) {
        return {{}, writtenSize};
    }
    const auto written = writtenBounds(root, area);
    if (written && (root.has(Attribute::dataBounds) || holds(writtenSize, *written))) {
        return {*written, writtenSize};
    }
    const auto resized = resizedBounds(root, area);
    if (!resized || profile != Profile::extended) {
        return fallback;
    }
    const bool wasCut = root.has(Attribute::dataBounds);
    return {*resized, wasCut && holds(writtenSize, *resized)
                          ? writtenSize
                          : ArtboardSize{fixedOf(area.width), fixedOf(area.height)}};
}

/// The page that was opened, unless it has another size now.
PageArea openedArea(const Page& opened, const PaperArea& area) {
    const Rect& bounds = opened.bounds();
    const double left = static_cast<double>(bounds.left) / fixedOne;
    const double top = static_cast<double>(bounds.top) / fixedOne;
    return isAsWritten(area, bounds)
               ? PageArea{bounds, opened.artboard()}
               : PageArea{areaOnPage(area, left, top), {fixedOf(area.width), fixedOf(area.height)}};
}

} // namespace

RootReading readRoot(const Attributes& root, Page& page, const OpenedPage* opened) {
    RootReading reading;
    const bool saysSo = root[Attribute::dataProducer] == "corvane";
    reading.ours = saysSo || opened != nullptr;
    double userUnit = 1;
    if (saysSo) {
        reading.provenance = readProvenance(root);
        userUnit = parseUserUnit(root[Attribute::dataUserUnit]);
        page.setProfile(root[Attribute::dataProfile] == "original" ? Profile::original
                                                                   : Profile::extended);
    }
    if (opened != nullptr && !reading.provenance.identity) {
        reading.provenance = opened->provenance;
    }
    if (!saysSo && opened != nullptr) {
        userUnit = opened->provenance.identity.value_or(PageIdentity()).page.userUnit;
        page.setProfile(opened->page.profile());
    }
    reading.pixel = 1 / pixelsPerPoint / userUnit;
    const PaperArea area = paperArea(root, reading.ours, userUnit);
    reading.viewport = area.viewport;
    const Rect paper{0, fixedOf(area.height), fixedOf(area.width), 0};
    PageArea found{paper, {paper.right, paper.top}};
    if (saysSo) {
        found = writtenArea(root, area, page.profile(), found);
    } else if (opened != nullptr) {
        found = openedArea(opened->page, area);
    }
    page.setBounds(found.bounds);
    page.setArtboard(found.artboard);
    const double left = static_cast<double>(found.bounds.left) / fixedOne;
    const double top = static_cast<double>(found.bounds.top) / fixedOne;
    reading.matrix = multiply(area.matrix, {1, 0, 0, -1, left, top});
    return reading;
}

} // namespace corvane
