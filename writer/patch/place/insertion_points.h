// Places between the operators of the content where something new can be drawn.
#pragma once

#include "writer/patch/compare/clip_matching.h"
#include "writer/patch/gathered_state.h"
#include "writer/patch/place/inserted_unit.h"
#include "writer/patch/place/paint_order.h"

#include <optional>
#include <vector>

namespace corvane {

/// What stands before and behind the place: events of objects that stay. Whatever marked content
/// and whatever clip without art is around both of them may be around the place.
struct InsertionGap {
    TraceIndex first = 0; ///< the first event that the place may stand in front of
    TraceIndex last = 0;  ///< the last such event
    Surroundings before;  ///< behind the object before; or at the start of the content
    Surroundings behind;  ///< the same for the object behind
};

class InsertionPoints {
public:
    InsertionPoints(const BaseContent& base, const EditedArtwork& artwork,
                    const ClipMatching& clips, GatheredState& state);

    /// The place for a unit: where the marked content around both neighbours and
    /// as many as possible of the group's clips are in force, and no others; of several, the last.
    /// Where what it holds stood on the page, clips without art that were around it must be around
    /// the place, its own marked content, its tag, may be, and its state can be set
    /// there. Past `budget::searchedPlaces` in all: `limit`.
    std::optional<InsertionPoint> find(const InsertionGap& gap, const InsertedUnit& unit);

private:
    void useGroup(EditedIndex group);
    bool canResume(const Surroundings& here) const;
    void findTextOutside();
    bool isMarkAllowed(TraceIndex mark, TraceIndex common) const;
    bool fits(const Surroundings& here, InsertionPoint& point);
    /// The innermost clip at a place that must be around it.
    TraceIndex sharedClip(TraceIndex clip) const;
    void findMarkLayers();

    const ContentTrace& trace_;
    PatchLayers& layers_;
    const EditedArtwork& artwork_;
    const ClipMatching& clips_;
    GatheredState& state_;
    /// Places behind which damaged content shows text outside of text objects: one that is put
    /// there would move that. Empty on other pages.
    std::vector<bool> beforeTextOutside_;
    EditedIndex group_ = 0;
    bool isText_ = false;
    std::optional<FormerPlace> former_;
    std::vector<TraceIndex> wanted_;     // clips of the group from the outermost; 0: a new one
    LayerChain wantedLayers_ = 0;        // of the group
    std::vector<LayerChain> markLayers_; // by mark; empty: none is of a layer that counts
    InsertionGap gap_;
    std::vector<TraceIndex> around_; // clips at the place looked at, from the innermost
    std::optional<InsertionPoint> latest_;
    ZoneCharge charge_;
    std::int64_t searched_ = 0; // places looked at, and what is around each
};

} // namespace corvane
