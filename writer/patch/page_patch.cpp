#include "writer/patch/page_patch.h"

#include "objects/identity.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/warning.h"
#include "writer/art/style_works.h"
#include "writer/patch/base_reading.h"
#include "writer/patch/inserted_works.h"
#include "writer/patch/kept_annotations.h"
#include "writer/patch/missing_art.h"
#include "writer/patch/object_patches.h"
#include "writer/patch/page_end.h"
#include "writer/patch/text/actual_text.h"
#include "writer/patch/text/show_patches.h"
#include "writer/patch/text/text_layout.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

namespace corvane {

namespace {

PatchCounts countsOf(const Matching& matching, const ClipMatching& clips, const PaintOrder& order) {
    PatchCounts counts;
    for (std::size_t i = 0; i < matching.objects.size(); ++i) {
        const MatchedObject& object = matching.objects[i];
        const bool isNew = object.source == noSource || object.isCopy;
        ++(isNew                     ? counts.added
           : object.difference.any() ? counts.changed
           : order.stays[i]          ? counts.kept
                                     : counts.moved);
    }
    const auto isChanged = [&](TraceIndex link) {
        return clips.changedBy[link] != 0 || clips.released[link];
    };
    for (TraceIndex link = 1; link < clips.released.size(); ++link) {
        counts.changed += isChanged(link) ? 1 : 0;
    }
    counts.removed =
        static_cast<std::int32_t>(std::ranges::count(matching.owners, EditedIndex{noSource}));
    return counts;
}

/// A page has one layer so far, the one in the back.
void tellLayers(std::span<const std::string> layers) {
    const auto extension = knownExtension();
    for (std::size_t i = 1; i < layers.size(); ++i) {
        if (layers[i].empty()) {
            continue; // no person made it: what stands outside all layers
        }
        raiseWarning(Warning::layerNotKept);
        if (extension && extension->layerNotKept != nullptr) {
            extension->layerNotKept(extension->context, layers[i]);
        }
    }
}

class Planner {
public:
    Planner(DocumentCache& cache, const PageBase& base, BaseReading& reading,
            ResourceRegistry& resources)
        : base_(base), reading_(reading), trace_(reading.trace), resources_(resources),
          tools_(cache, base, trace_, reading.fonts, resources) {}

    PagePatch plan() {
        EditedArtwork artwork = listArtwork();
        layOutText(reading_, artwork, tools_.setText);
        const Matching matching = matchArtwork(reading_, artwork, base_.isAsOpened);
        refuseMissing(reading_, matching);
        refuseChangedAnnotations(reading_, artwork);
        const ClipMatching clips = matchClips(reading_, artwork, matching);
        const PaintOrder order = orderObjects(reading_, artwork, matching, clips);
        tellLayers(artwork.layers);
        ObjectPatches objects(tools_, reading_, artwork, matching, clips, order);
        objects.addTo(content_.patches);
        patchShows(tools_, matching, order, content_.patches);
        patchActualText(tools_, matching, order, content_.patches);
        insert(artwork, matching, order);
        std::ranges::stable_sort(content_.patches, {}, [](const Patch& patch) {
            return std::pair(patch.range.start, patch.range.end);
        });
        refuseDamaged();
        content_.charge = std::move(tools_.charge);
        return {.content = std::move(content_),
                .bytes = std::move(tools_.bytes),
                .patterns = tools_.patterns.take(),
                .groups = std::move(tools_.groups),
                .looks = std::move(tools_.looks),
                .fonts = tools_.setText.takeFonts(),
                .images = tools_.images.images(),
                .counts = countsOf(matching, clips, order),
                .isDamaged = hasDamage(),
                .resetState = resetState_};
    }

private:
    /// The name of the state that a page begins with.
    std::string_view resetName() {
        if (resetState_ == 0) {
            resetState_ = nextIdentity();
        }
        return resources_.add(ResourceCategory::graphicsState, resetState_, 0);
    }

    void insert(const EditedArtwork& artwork, const Matching& matching, const PaintOrder& order) {
        const std::vector<bool> apart = groupsApart(artwork, order);
        InsertedWorks works(tools_, reading_, artwork, matching, apart);
        const std::span<const Insertion> all = order.insertions;
        for (std::size_t from = 0; from < all.size();) {
            const InsertionPoint& point = all[from].point;
            std::size_t to = from + 1;
            while (to < all.size() && all[to].point.event == point.event &&
                   all[to].point.isAtEnd == point.isAtEnd) {
                ++to;
            }
            const auto here = all.subspan(from, to - from);
            if (point.isAtEnd) {
                const PageEnd end = closePage(trace_);
                content_.before = end.before;
                content_.patches.insert(content_.patches.end(), end.patches.begin(),
                                        end.patches.end());
                works.write(here, end.inForce, {});
                content_.behind = end.behind + tools_.taken();
            } else {
                const bool isReset = point.inForce.settings == 0;
                if (point.inForce.isInText) {
                    tools_.walk.text.add("ET\n");
                }
                works.write(here, point.inForce, isReset ? std::string_view() : resetName());
                if (point.inForce.isInText) {
                    resumeTextWorks(tools_, trace_.textPlace(point.inForce.text));
                }
                const std::uint32_t place = placeBefore(trace_, point.event);
                content_.patches.push_back({{place, place}, "\n" + tools_.taken()});
            }
            from = to;
        }
    }

    bool hasDamage() const {
        bool isDamaged = false;
        for (std::size_t i = 0; i < base_.streams.size(); ++i) {
            isDamaged = isDamaged || trace_.isDamaged(i);
        }
        return isDamaged;
    }

    /// A stream whose tokens could not all be read is not written again.
    void refuseDamaged() const {
        const ContentBytes& bytes = tools_.bytes;
        for (const auto& [range, text] : content_.patches) {
            const bool isEmpty = range.start == range.end;
            if (isEmpty && std::ranges::binary_search(bytes.starts(), range.start)) {
                continue; // between two streams
            }
            const std::size_t last = bytes.streamAt(isEmpty ? range.start : range.end - 1);
            for (std::size_t i = bytes.streamAt(range.start); i <= last; ++i) {
                if (trace_.isDamaged(i)) {
                    failException(Exception::unpatchable);
                }
            }
        }
    }

    const PageBase& base_;
    BaseReading& reading_;
    const ContentTrace& trace_;
    ResourceRegistry& resources_;
    PatchTools tools_;
    ContentPatches content_;
    std::int32_t resetState_ = 0;
};

} // namespace

PagePatch planPatch(DocumentCache& cache, const PageBase& base, ResourceRegistry& resources) {
    BaseReading reading;
    std::optional<PagePatch> patch;
    const Exception code = guarded([&] {
        readBase(cache, base, reading);
        patch = Planner(cache, base, reading, resources).plan();
    });
    const Exception disposal = guarded([&] { disposeBase(reading); });
    resetException();
    raiseException(code != Exception::none ? code : disposal);
    return std::move(*patch);
}

} // namespace corvane
