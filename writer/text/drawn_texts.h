// The text of a page that is drawn anew, in fonts of the machine.
#pragma once

#include "host/appearance.h"
#include "writer/art/art_stack.h"
#include "writer/art/text/text_drawing.h"
#include "writer/page/resource_registry.h"
#include "writer/text/set_text.h"

#include <map>
#include <set>

namespace corvane {

class DrawnTexts final : public TextDrawing {
public:
    /// Lays out all text of the layers that are drawn. Raises `unpatchable` where no font shows a
    /// letter. Fonts get names in `resources`, which outlives the object.
    explicit DrawnTexts(ResourceRegistry& resources);
    /// The same for all text within `top`.
    DrawnTexts(ResourceRegistry& resources, Art top);

    void write(Walk& walk, Art text) override;
    void clip(Walk& walk, Art clip) override;

    /// Once all is written.
    const NewFonts& fonts() const { return setText_.fonts(); }

private:
    void addAll(Art top);
    void add(Art text);
    SetText::Index firstOf(Art text) const;
    void clipWithLine(Walk& walk, Art text);
    void addMask(SoftMask mask, ArtStack& pending);

    FontResourceNames names_;
    SetText setText_{nullptr};
    std::map<Art, SetText::Index> first_;
    std::set<SoftMask> masks_; ///< that were looked at
};

} // namespace corvane
