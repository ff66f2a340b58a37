// Masks: what `mask` names (CSS Masking Level 1, 7).
#pragma once

#include "app/svg/read/context.h"
#include "app/svg/read/values/length.h"
#include "app/svg/read/values/user_box.h"
#include "host/matrix.h"

#include <string_view>

namespace corvane {

/// The user space of what is masked, and the box around it there, where `fitsBox`.
struct MaskUse {
    RealMatrix toArt;
    Viewport viewport;
    UserBox box;
};

class PaintReader;

class MaskReader {
public:
    MaskReader(ReadingContext& context, PaintReader& paints) : context_(context), paints_(paints) {}

    /// Whether the mask of that id needs the box of what is masked.
    bool fitsBox(std::string_view id) const;

    /// Null, and counted, where there is none or it has itself.
    SoftMask read(std::string_view id, const MaskUse& use);

private:
    SoftMask make(pugi::xml_node node, const MaskUse& use);
    Art openContent(Art content, const ComputedStyle& style, const MaskUse& use);
    void clip(Art content, const Attributes& attributes, const MaskUse& use);
    void grayOut(Art content);

    ReadingContext& context_;
    PaintReader& paints_;
};

} // namespace corvane
