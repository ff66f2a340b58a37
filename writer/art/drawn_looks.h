// How drawn art is laid over what is behind it, as objects of the file: external graphics states,
// soft masks and transparency groups.
//
// Source: PDF Reference, 4.3.4 and 7.5.
#pragma once

#include "host/appearance.h"
#include "host/matrix.h"
#include "reader/document/cache.h"
#include "runtime/memory.h"
#include "writer/page/resource_registry.h"

#include <compare>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

struct Walk;
class DrawnTexts;
class TextDrawing;

/// What an external graphics state sets; what it does not have stays as it is.
struct LookState {
    std::optional<double> fillOpacity = {};
    std::optional<double> strokeOpacity = {};
    std::optional<BlendMode> blend = {};
    std::optional<SoftMask> mask = {}; ///< null: none
    std::optional<Overprint> overprint = {};
    std::optional<RenderingIntent> intent = {};
    bool isEmpty() const { return *this == LookState(); }
    friend auto operator<=>(const LookState&, const LookState&) = default;
};

/// The look of a group, or of an object that is painted at once.
Appearance appearanceOf(Art art);
/// What is not as a page begins.
LookState stateOf(const Appearance& appearance);
/// The same with all that it does not say: it leaves nothing of the one in force.
LookState wholeStateOf(const Appearance& appearance);

class DrawnLooks {
public:
    /// Nothing is seen beyond `area`; without one, beyond the bounds of the page.
    explicit DrawnLooks(ResourceRegistry& resources, const std::optional<Rect>& area = {})
        : resources_(&resources), area_(area) {}

    /// The name of an external graphics state that sets this; of equal states there is one. Masks
    /// are drawn as `walk` draws art, and lie on the artboard: it must be the space in force.
    std::string_view addState(const Walk& walk, const LookState& state);
    /// The name of a transparency group of this content, to be drawn in the space of the artboard.
    /// `space` leads from the group's own space, in which its patterns lie, to that.
    std::string_view addGroup(std::string content, const Appearance& appearance,
                              const RealMatrix& space = {});
    /// The same of what a group of the artwork holds, or of other art, which has the look `inside`
    /// in it.
    std::string_view addGroup(const Walk& walk, Art art, const Appearance& inside,
                              const Appearance& appearance);

    /// Writes all objects to the cache's output. `resources` are those of the page, to which
    /// nothing is added any more.
    void write(DocumentCache& cache, const ResourceRegistry& resources) const;

private:
    struct Form {
        std::int32_t number = 0;
        std::string content;
        RealMatrix space = {}; ///< its own, as `addGroup` is told
        bool isIsolated = false;
        bool isKnockout = false;
        bool isMask = false;
    };
    struct DrawnMask {
        std::int32_t group = 0;
        std::int32_t transfer = 0; ///< of a function; 0: values stay as they are
    };

    std::int32_t addForm(Form form);
    std::string drawn(const Walk& walk, TextDrawing* texts, Art art, const Appearance& inside);
    TextDrawing* textsOf(const Walk& walk, Art content);
    const DrawnMask& maskOf(const Walk& walk, SoftMask mask);
    std::string textOf(const LookState& state) const;
    void writeForm(DocumentCache& cache, const Form& form) const;
    void writeTransfer(DocumentCache& cache, SoftMask mask, std::int32_t number) const;

    ResourceRegistry* resources_;
    std::optional<Rect> area_;
    std::map<LookState, std::int32_t> states_;
    std::map<SoftMask, DrawnMask> masks_;
    std::vector<Form> forms_;
    std::vector<std::shared_ptr<DrawnTexts>> texts_; ///< of masks
    std::int32_t sharedResources_ = 0; ///< what the contents of forms look up names in
    std::size_t depth_ = 0;
    std::int64_t contentBytes_ = 0;
    ZoneCharge charge_; // of the contents
};

/// Sets a state, unless it is empty.
void stateWorks(Walk& walk, const LookState& state);

/// Draws art that has a look: a path of one paint in a state of its own, all else as a group.
void lookedWorks(Walk& walk, Art art, const Appearance& appearance);

} // namespace corvane
