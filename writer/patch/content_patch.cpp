#include "writer/patch/content_patch.h"

#include "runtime/exception.h"
#include "writer/patch/compare/clip_matching.h"
#include "writer/patch/compare/missing_art.h"
#include "writer/patch/form/edited_form.h"
#include "writer/patch/image_ends.h"
#include "writer/patch/object_patches.h"
#include "writer/patch/place/page_end.h"
#include "writer/patch/place/paint_order.h"
#include "writer/patch/text/actual_text.h"
#include "writer/patch/text/show_patches.h"
#include "writer/patch/works/inserted_works.h"

#include <algorithm>
#include <span>
#include <utility>

namespace corvane {

namespace {

bool hasDamage(const ContentTrace& trace) {
    bool isDamaged = false;
    for (std::size_t i = 0; i + 1 < trace.streamStarts().size(); ++i) {
        isDamaged = isDamaged || trace.isDamaged(i);
    }
    return isDamaged;
}

class Planner {
public:
    Planner(PatchTools& tools, const EditedArtwork& artwork, const Matching& matching)
        : tools_(tools), base_(tools.content), trace_(base_.trace), artwork_(artwork),
          matching_(matching) {}

    ContentPatch plan() {
        const ClipMatching clips = matchClips(base_, artwork_, matching_);
        const PaintOrder order = orderObjects(base_, artwork_, matching_, clips, tools_.state);
        ObjectPatches objects(tools_, base_, artwork_, matching_, clips, order);
        objects.addTo(content_.patches);
        patchShows(tools_, base_, artwork_, matching_, order, content_.patches);
        PropertyLists lists(tools_);
        patchActualText(tools_, lists, matching_, order, content_.patches);
        insert(order);
        std::ranges::stable_sort(content_.patches, {}, [](const Patch& patch) {
            return std::pair(patch.range.start, patch.range.end);
        });
        refuseDamaged();
        keepImageEnds(trace_, tools_.bytes, content_.patches);
        content_.charge = std::move(tools_.charge);
        ContentPatch patch = keepContent(tools_);
        patch.content = std::move(content_);
        patch.lists = lists.take();
        patch.counts = counts(clips, order);
        return patch;
    }

private:
    PatchCounts counts(const ClipMatching& clips, const PaintOrder& order) const {
        PatchCounts counts;
        for (std::size_t i = 0; i < matching_.objects.size(); ++i) {
            const MatchedObject& object = matching_.objects[i];
            const EditedObject& edited = artwork_.objects[static_cast<EditedIndex>(i)];
            const EditedForm* const form = edited.form;
            const bool isNew = object.source == noSource || object.isCopy;
            const bool isChanged = object.difference.any() || artwork_.wholeAround(edited) != 0;
            if (!isNew && object.difference.inside) {
                counts += form->counts;
                continue;
            }
            (isNew            ? counts.added
             : isChanged      ? counts.changed
             : order.stays[i] ? counts.kept
                              : counts.moved) += form != nullptr ? form->leaves : 1;
        }
        for (TraceIndex link = 1; link < clips.released.size(); ++link) {
            counts.changed += clips.changedBy[link] != 0 || clips.released[link] ? 1 : 0;
        }
        for (PaintedIndex source = 0; source < matching_.owners.size(); ++source) {
            if (matching_.owners[source] == noSource) {
                const PaintedArt& gone = trace_.painted()[source];
                counts.removed += gone.isForm ? leavesOf(trace_.formAt(gone.event)->trace) : 1;
            }
        }
        return counts;
    }

    void insert(const PaintOrder& order) {
        const std::vector<bool> apart = groupsApart(artwork_, order);
        InsertedWorks works(tools_, base_, artwork_, matching_, apart);
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
                writeAtEnd(works, here);
            } else {
                writeAt(works, here, point);
            }
            from = to;
        }
    }

    void writeAtEnd(InsertedWorks& works, std::span<const Insertion> insertions) {
        const PageEnd end = closePage(trace_, tools_.state.inherits());
        content_.before = end.before;
        content_.patches.insert(content_.patches.end(), end.patches.begin(), end.patches.end());
        works.write(insertions, end.inForce);
        content_.behind = end.behind + tools_.taken();
    }

    void writeAt(InsertedWorks& works, std::span<const Insertion> insertions,
                 const InsertionPoint& point) {
        if (point.inForce.isInText) {
            tools_.walk.text.add("ET\n");
        }
        works.write(insertions, point.inForce);
        if (point.inForce.isInText) {
            resumeTextWorks(tools_, trace_.textPlace(point.inForce.text));
        }
        const std::uint32_t place = placeBefore(trace_, point.event);
        content_.patches.push_back({{place, place}, "\n" + tools_.taken()});
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

    PatchTools& tools_;
    const BaseContent& base_;
    const ContentTrace& trace_;
    const EditedArtwork& artwork_;
    const Matching& matching_;
    ContentPatches content_;
};

} // namespace

ContentPatch patchContent(PatchTools& tools, const EditedArtwork& artwork,
                          const Matching& matching) {
    return Planner(tools, artwork, matching).plan();
}

ContentPatch keepContent(PatchTools& tools) {
    return {.content = {},
            .bytes = std::move(tools.bytes),
            .patterns = tools.patterns.take(),
            .lists = {},
            .groups = std::move(tools.groups),
            .looks = std::move(tools.looks),
            .counts = {},
            .isDamaged = hasDamage(tools.trace)};
}

} // namespace corvane
