// The text of a page that is drawn anew, in fonts of the machine.
#pragma once

#include "writer/art/text_drawing.h"
#include "writer/page/resource_registry.h"
#include "writer/text/set_text.h"

#include <map>

namespace corvane {

class DrawnTexts final : public TextDrawing {
public:
    /// Lays out all text of the layers that are drawn. Raises `unpatchable` where no font shows a
    /// letter.
    DrawnTexts();

    void write(Walk& walk, Art text) override;

    /// Fonts and their names, once all is written.
    const ResourceRegistry& resources() const { return resources_; }
    const NewFonts& fonts() const { return setText_.fonts(); }

private:
    void add(Art text);

    ResourceRegistry resources_;
    FontNames names_{resources_};
    SetText setText_{nullptr};
    std::map<Art, SetText::Index> first_;
};

} // namespace corvane
