// Gradients and patterns of the artwork that no object of the file holds yet.
#pragma once

#include "host/extension.h"
#include "host/matrix.h"
#include "objects/object_identifier.h"
#include "reader/document/cache.h"
#include "runtime/memory.h"
#include "writer/art/paint_drawing.h"
#include "writer/page/drawn_content.h"
#include "writer/page/resource_registry.h"
#include "writer/paint/gradient_text.h"
#include "writer/paint/ink_spaces.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace corvane {

/// A content that paints: what leads from the artboard, or the space of a tile's art, to its
/// default space, and the part of that art that can be seen.
struct PaintedContent {
    RealMatrix placement;
    Box area;
    friend bool operator==(const PaintedContent&, const PaintedContent&) = default;
};

/// The part of the artboard that the host shows.
Box visibleArtboard();

/// The objects of all new paints of a save, each once however often it is used.
class NewPaints : private FunctionHolder {
public:
    explicit NewPaints(DocumentCache& cache) : cache_(&cache) {}
    NewPaints(NewPaints&&) = default;
    NewPaints& operator=(NewPaints&&) = default;

    /// The number of a pattern: a shading, or a tile. Patterns within patterns deeper than the
    /// budget raise `limit`.
    std::int32_t pattern(const Colour& colour, const PaintedContent& content);
    /// The number of an external graphics state with the mask of a gradient; 0: it needs none.
    std::int32_t mask(const Colour& colour, const PaintedContent& content);

    /// The inks of resources are those of the artwork that have the same name.
    void knowInks(const Object& resources);
    /// The colour space of a custom colour: Separation, of that ink alone.
    ObjectIdentifier ink(PaintSource custom);
    /// As `InkSpaces::of`.
    ObjectIdentifier inkSpace(PaintSource mixture) {
        return inkSpaces_.of(*cache_, mixture, *this);
    }
    /// As `corvane::plainSpace`.
    std::int32_t plainSpace(ColourSpace::Kind device);

    /// Writes all of them to the cache's output.
    void write(DocumentCache& cache) const;

private:
    struct PaintObject {
        std::int32_t number = 0;
        std::string entries; ///< of its dictionary; of a function, all of it
        bool isDictionary = true;
        std::optional<std::string> data = {};            ///< of a stream
        std::unique_ptr<DrawnContent> content = nullptr; ///< of a tile
    };
    using Key = std::tuple<PaintSource, bool, std::array<double, 10>>;

    static Key keyOf(const Colour& colour, bool isMask, const PaintedContent& content);
    std::int32_t hold(std::string function) override;
    std::int32_t holdStream(std::string entries, std::string data) override;
    std::string spaceText(ColourSpace::Kind device) override;
    void add(PaintObject object);
    std::string inkAlternate(const CustomColour& ink);
    std::int32_t shadingPattern(const GradientFacts& gradient, const PaintedContent& content);
    std::int32_t tilingPattern(const PatternFacts& pattern, const PaintedContent& content);
    std::int32_t opacityMask(const GradientFacts& gradient, const PaintedContent& content);

    DocumentCache* cache_;
    std::map<Key, std::int32_t> numbers_;
    std::map<std::string, ObjectIdentifier> inksOfPage_; ///< by name
    std::map<PaintSource, ObjectIdentifier> inks_;
    InkSpaces inkSpaces_;
    std::vector<PaintObject> objects_;
    std::int64_t bytes_ = 0;
    ZoneCharge charge_; // of their texts
    std::int32_t depth_ = 0;
};

/// The paints of one content, by the names in its resources.
class ContentPaints final : public PaintDrawing {
public:
    ContentPaints(NewPaints& paints, ResourceRegistry& resources, const PaintedContent& content)
        : paints_(paints), resources_(resources), content_(content) {}

    void set(Walk& walk, const Colour& colour, bool isFill) override;
    std::string_view spaceOf(ColourSpace::Kind device) override;
    std::string_view maskOf(const Colour& colour) override;
    PaintDrawing& onArtboard() override;

private:
    void setInks(Walk& walk, PaintSource mixture, bool isFill);

    NewPaints& paints_;
    ResourceRegistry& resources_;
    PaintedContent content_;
    std::unique_ptr<ContentPaints> onArtboard_;
};

} // namespace corvane
