#include "writer/patch/page_patch.h"

#include "objects/identity.h"
#include "runtime/exception.h"
#include "runtime/warning.h"
#include "writer/art/style_works.h"
#include "writer/patch/base_reading.h"
#include "writer/patch/inserted_works.h"
#include "writer/patch/missing_art.h"
#include "writer/patch/object_patches.h"
#include "writer/patch/page_end.h"

#include <algorithm>
#include <span>
#include <utility>

namespace corvane {

namespace {

PatchCounts countsOf(const Matching& matching, const PaintOrder& order) {
    PatchCounts counts;
    for (std::size_t i = 0; i < matching.objects.size(); ++i) {
        const MatchedObject& object = matching.objects[i];
        const bool isNew = object.source == noSource || object.isCopy;
        ++(isNew                     ? counts.added
           : object.difference.any() ? counts.changed
           : order.stays[i]          ? counts.kept
                                     : counts.moved);
    }
    counts.removed =
        static_cast<std::int32_t>(std::ranges::count(matching.owners, EditedIndex{noSource}));
    return counts;
}

class Planner {
public:
    Planner(DocumentCache& cache, const PageBase& base, BaseReading& reading,
            ResourceRegistry& resources)
        : bytes_(cache, base, reading.trace), reading_(reading), trace_(reading.trace),
          resources_(resources), walk_(sink_) {}

    PagePatch plan() {
        const EditedArtwork artwork = listArtwork();
        const Matching matching = matchArtwork(reading_, artwork);
        refuseMissing(reading_, matching);
        const ClipMatching clips = matchClips(reading_, artwork, matching);
        const PaintOrder order = orderObjects(reading_, artwork, matching, clips);
        if (artwork.layers > 1) {
            raiseWarning(Warning::layerNotKept);
        }
        patch_.counts = countsOf(matching, order);
        ObjectPatches objects(walk_, sink_, bytes_, reading_, artwork, matching, clips, order);
        objects.addTo(patch_.content.patches);
        insert(artwork, matching, order);
        std::ranges::stable_sort(patch_.content.patches, {}, [](const Patch& patch) {
            return std::pair(patch.range.start, patch.range.end);
        });
        patch_.streamStarts.assign(trace_.streamStarts().begin(), trace_.streamStarts().end());
        return std::move(patch_);
    }

private:
    /// The name of the state that a page begins with.
    std::string_view resetName() {
        if (patch_.resetState == 0) {
            patch_.resetState = nextIdentity();
        }
        return resources_.add(ResourceCategory::graphicsState, patch_.resetState, 0);
    }

    void insert(const EditedArtwork& artwork, const Matching& matching, const PaintOrder& order) {
        const std::vector<bool> apart = groupsApart(artwork, order);
        InsertedWorks works(walk_, bytes_, reading_, artwork, matching, apart);
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
                patch_.content.before = end.before;
                patch_.content.patches.insert(patch_.content.patches.end(), end.patches.begin(),
                                              end.patches.end());
                works.write(here, end.inForce, {});
                patch_.content.behind = end.behind + written();
            } else {
                const bool isReset = point.inForce.settings == 0;
                works.write(here, point.inForce, isReset ? std::string_view() : resetName());
                const std::uint32_t place = placeBefore(trace_, point.event);
                patch_.content.patches.push_back({{place, place}, "\n" + written()});
            }
            from = to;
        }
    }

    std::string written() {
        walk_.text.flush();
        return sink_.take();
    }

    ContentBytes bytes_;
    BaseReading& reading_;
    const ContentTrace& trace_;
    ResourceRegistry& resources_;
    TextSink sink_;
    Walk walk_;
    PagePatch patch_;
};

} // namespace

PagePatch planPatch(DocumentCache& cache, const PageBase& base, ResourceRegistry& resources) {
    BaseReading reading;
    PagePatch patch;
    const Exception code = guarded([&] {
        readBase(cache, base, reading);
        patch = Planner(cache, base, reading, resources).plan();
    });
    const Exception disposal = guarded([&] { disposeBase(reading); });
    resetException();
    raiseException(code != Exception::none ? code : disposal);
    return patch;
}

} // namespace corvane
