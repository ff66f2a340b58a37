// Patches where paths, images and forms of the page stand: what was changed, removed or moved away,
// and clips.
#pragma once

#include "writer/patch/compare/clip_matching.h"
#include "writer/patch/patch.h"
#include "writer/patch/place/paint_order.h"
#include "writer/patch/works/changed_works.h"

#include <vector>

namespace corvane {

class ObjectPatches {
public:
    ObjectPatches(PatchTools& tools, const BaseContent& base, const EditedArtwork& artwork,
                  const Matching& matching, const ClipMatching& clips, const PaintOrder& order)
        : tools_(tools), base_(base), trace_(base.trace), artwork_(artwork), matching_(matching),
          clips_(clips), order_(order) {}

    void addTo(std::vector<Patch>& patches);

private:
    enum class Paint { none, kept, changed, gone };
    enum class Clip { none, kept, changed, released };

    Paint paintOf(PaintedIndex source) const;
    Clip clipOf(TraceIndex path) const;
    void patchPath(TraceIndex path, PaintedIndex source, Paint paint, Clip clip);
    void patchObject(PaintedIndex source);
    void patchShading(PaintedIndex source);
    void remove(TraceIndex path);
    void removeClipWords(TraceIndex path);
    void drawChanged(PaintedIndex source);
    void enterSpace(const RealMatrix& space);
    void drawSeenThrough(TraceIndex event, Art art, const Appearance& appearance);
    void moveAlong(TraceIndex event, const PageMovement& movement);
    TraceIndex linkOf(TraceIndex path) const;

    PatchTools& tools_;
    const BaseContent& base_;
    const ContentTrace& trace_;
    const EditedArtwork& artwork_;
    const Matching& matching_;
    const ClipMatching& clips_;
    const PaintOrder& order_;
    std::vector<Patch>* patches_ = nullptr;
};

} // namespace corvane
