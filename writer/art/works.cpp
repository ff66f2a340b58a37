#include "writer/art/works.h"

#include "output/primitives.h"
#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "runtime/rules.h"
#include "writer/art/layers.h"
#include "writer/art/object_works.h"
#include "writer/art/style_works.h"

#include <cstdint>

namespace corvane {

namespace {

/// The content's space: where the artboard lies on the page.
void originWorks(Filter& stream, const RealMatrix& placement) {
    if (rules().pageAtOrigin) {
        if (placement != RealMatrix()) {
            matrixOutput(stream, placement);
            stringOutput(stream, "cm\r");
        }
        return;
    }
    DocumentInfo info;
    callHost(slot::getDocumentInfo, &info);
    if (info.origin != Point()) {
        stringOutput(stream, "1 0 0 1 ");
        pointOutput(stream, info.origin);
        stringOutput(stream, "cm\r");
    }
}

/// Tells the host how much is written: a thousand for each layer.
class SavingProgress {
public:
    explicit SavingProgress(std::size_t layers)
        : extension_(knownExtension()), total_(static_cast<std::int64_t>(layers) * layerShare) {}

    void beginLayer(std::size_t objects) {
        objects_ = objects;
        tell(0);
    }
    /// `left`: objects of the layer that are still to come.
    void step(std::size_t left) {
        if (left < objects_) {
            tell(static_cast<std::int64_t>((objects_ - left) * layerShare / objects_));
        }
    }
    void endLayer() {
        tell(layerShare);
        done_ += layerShare;
        told_ = 0;
    }

private:
    static constexpr std::int64_t layerShare = 1000;

    void tell(std::int64_t share) {
        if (share != told_ && extension_ && extension_->progress != nullptr) {
            told_ = share;
            extension_->progress(extension_->context, done_ + share, total_);
        }
    }

    const std::optional<HostExtension> extension_;
    std::int64_t total_;
    std::int64_t done_ = 0;
    std::int64_t told_ = 0;
    std::size_t objects_ = 0;
};

void layerComment(Walk& walk, const LayerInfo& info) {
    walk.text.add("%%Layer: ");
    walk.text.add(commentText(info.title));
    walk.text.add(info.visible != 0 ? ", visible" : "");
    walk.text.add(info.preview != 0 ? ", preview" : "");
    walk.text.add(info.locked != 0 ? ", locked" : "");
    walk.text.add(info.printing != 0 ? ", printing" : "");
    walk.text.add(info.dimmed != 0 ? ", dimmed" : "");
    walk.text.add("\n");
}

void layerWorks(Walk& walk, Layer layer, SavingProgress& progress) {
    LayerInfo info;
    callHost(slot::getLayerInfo, layer, &info);
    if (leavesOut(layer, info)) {
        progress.endLayer();
        return;
    }
    layerComment(walk, info);
    const Art group = artOf(layer);
    ArtStack pending;
    layerArtWorks(walk, group, pending);
    progress.beginLayer(pending.size());
    for (ArtStep step; pending.next(step);) {
        stepWorks(walk, step, pending);
        if (pending.depth() == 1) {
            progress.step(pending.size());
        }
    }
    progress.endLayer();
}

} // namespace

std::int32_t documentWorks(DocumentCache& cache, const RealMatrix& placement,
                           const Drawings& drawings) {
    Filter& stream = *cache.output;
    const std::int32_t start = markFilter(stream);
    originWorks(stream, placement);
    Walk walk(stream);
    walk.texts = drawings.texts;
    walk.images = drawings.images;
    walk.paints = drawings.paints;
    walk.looks = drawings.looks;
    walk.layers = drawings.layers;
    walk.others = drawings.others;
    ChargedList<Layer> layers = listLayers();
    SavingProgress progress(layers.size());
    while (!layers.empty()) {
        layerWorks(walk, layers.pop(), progress);
    }
    walk.text.flush();
    return markFilter(stream) - start;
}

} // namespace corvane
