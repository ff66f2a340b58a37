// What all readers of one file share.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/art_source.h"
#include "app/svg/read/budget.h"
#include "app/svg/read/file_index.h"
#include "app/svg/read/image_loader.h"
#include "app/svg/read/style/inherited_style.h"
#include "app/svg/read/style/style_sheet.h"
#include "app/svg/read/tally.h"
#include "app/svg/reader.h"
#include "host/appearance.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>

namespace corvane {

/// A mask, and the user space that it was read in.
struct KnownMask {
    RealMatrix toArt;
    Viewport viewport;
    SoftMask mask = SoftMask::null;
};

/// A gradient or pattern, likewise.
struct KnownPaint {
    RealMatrix toArt;
    Viewport viewport;
    PaintSource source = PaintSource::null;
};

struct ReadingContext {
    /// Counts elements that are read once more because something refers to them. Throws `SvgError`
    /// past the budget.
    void expand(std::int64_t elements) {
        expanded += elements;
        if (expanded > budget.expandedElements) {
            throw SvgError("elements that are used again and again make too many");
        }
    }

    /// Whether the art of a pattern, mask or marker can be read now: not within itself.
    bool mayEnter(pugi::xml_node element) const {
        return std::ranges::find(activePatterns, element) == activePatterns.end() &&
               activePatterns.size() < budget.references;
    }

    Document& document;
    FileIndex& index;
    StyleSheet& sheet;
    Tally& tally;
    const ReadingBudget& budget;
    const std::function<void()>& pause; ///< as `readSvg` got it
    ImageLoader& loader;
    bool ours = false;           ///< the file says that this program wrote it
    bool hasUsualRem = true;     ///< the root says no other size of fonts
    bool holdsAppearance = true; ///< opacity, blending and masks become the art's
    SourceBase sourceBase = {};  ///< of the page that the file came from
    std::int64_t expanded = 0;   ///< elements read for a `use` or a pattern
    std::vector<pugi::xml_node> activePatterns = {}; ///< masks and markers too, that are being read
    double pixel = 1 / pixelsPerPoint;               ///< of the page, in the art
    InheritedStyles inherited = {};
    /// The latest use of a mask, by its node: most are used from one user space.
    std::unordered_map<std::size_t, KnownMask> masks = {};
    /// The same of paints, those of tiles included.
    std::unordered_map<std::size_t, KnownPaint> paints = {};
    std::vector<SvgImage> images = {};
    /// Layers of the PDF by their numbers and names: how often they are shown otherwise than the
    /// file has them.
    std::map<std::pair<std::int32_t, std::string>, SplitLayer> layerGroups = {};
};

/// Keeps count of the patterns, masks and markers whose art is being read.
class ActiveElement {
public:
    ActiveElement(ReadingContext& context, pugi::xml_node element)
        : active_(context.activePatterns) {
        active_.push_back(element);
    }
    ActiveElement(const ActiveElement&) = delete;
    ActiveElement& operator=(const ActiveElement&) = delete;
    ~ActiveElement() { active_.pop_back(); }

private:
    std::vector<pugi::xml_node>& active_;
};

} // namespace corvane
