// Objects that are written apart: new ones, copies, and those that moved in the order.
#pragma once

#include "writer/patch/compare/matching.h"
#include "writer/patch/place/paint_order.h"
#include "writer/patch/works/changed_works.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace corvane {

/// Which groups of the artwork hold nothing that stays on the page: they can be groups again when
/// the page is opened.
std::vector<bool> groupsApart(const EditedArtwork& artwork, const PaintOrder& order);

class InsertedWorks {
public:
    InsertedWorks(PatchTools& tools, const BaseContent& base, const EditedArtwork& artwork,
                  const Matching& matching, const std::vector<bool>& apart)
        : tools_(tools), walk_(tools.walk), base_(base), trace_(base.trace), artwork_(artwork),
          matching_(matching), apart_(apart), space_(matrixOf(base, tools.ofPage.base)) {}

    /// Writes objects of one place, between q and Q.
    void write(std::span<const Insertion> insertions, const Surroundings& inForce);

private:
    void writeWithin(std::span<const Insertion> insertions, const Surroundings& inForce);
    std::vector<EditedIndex> missingGroups(const Insertion& insertion) const;
    std::vector<EditedIndex> layersBefore(const Insertion& insertion) const;
    void openGroups(const Insertion& insertion);
    void clip(const EditedGroup& group);
    void closeGroups(std::size_t left);
    bool beginsSet() const;
    void resetWorks();
    void inheritedWorks();
    void beginForm();
    void endForm(const Appearance& appearance);
    void writeObject(const Insertion& insertion);
    void writeSourced(const MatchedObject& object, const EditedObject& edited, TraceIndex marks);
    void writeState(const PaintedArt& was, const ArtDifference& difference,
                    const RealMatrix& movement);
    void writeGlyphs(const MatchedObject&, const EditedObject&);
    void writeText(const MatchedObject& object, const EditedObject& edited);
    void writeImage(const MatchedObject& object, const EditedObject& edited);
    void writeForm(const MatchedObject& object, const EditedForm& form);
    void writeNew(const EditedObject& edited);
    std::vector<TraceIndex> keptLayers(const MatchedObject& object, const EditedObject& edited,
                                       TraceIndex marks) const;
    bool isMarked(TraceIndex mark, ContentLayer layer) const;

    PatchTools& tools_;
    Walk& walk_;
    const BaseContent& base_;
    const ContentTrace& trace_;
    const EditedArtwork& artwork_;
    const Matching& matching_;
    const std::vector<bool>& apart_;
    const RealMatrix& space_;         // from the content's own space to the artboard
    TraceIndex setter_ = 0;           // the latest before the place
    bool isBehindNew_ = false;        // new art was drawn at the place
    std::vector<EditedIndex> open_;   // groups, from the outermost
    std::vector<std::string> around_; // what was written before each form that is open
};

} // namespace corvane
