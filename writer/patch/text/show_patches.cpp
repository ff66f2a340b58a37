#include "writer/patch/text/show_patches.h"

#include "host/matrix.h"
#include "reader/content/losses.h"
#include "reader/text/render_mode.h"
#include "writer/patch/text/show_bytes.h"
#include "writer/patch/text/text_works.h"
#include "writer/text/text_state.h"

#include <span>
#include <string>

namespace corvane {

namespace {

/// A number of an array that moves by so much in text space.
void numberWorks(Walk& walk, double way, double unit) {
    constexpr double thousand = 1000;
    constexpr int digits = 5;
    if (way != 0 && unit != 0) {
        walk.text.addReal(-thousand * way / unit + 0.0, digits);
    }
}

class ShowPatcher {
public:
    ShowPatcher(PatchTools& tools, const BaseContent& base, const EditedArtwork& artwork,
                const Matching& matching, const PaintOrder& order)
        : tools_(tools), trace_(tools.trace), base_(base), artwork_(artwork), matching_(matching),
          order_(order) {}

    /// The parts of one operator, of which not all stay.
    Patch patch(std::span<const PaintedArt> parts, PaintedIndex first) {
        const TraceEvent& event = trace_.events()[parts.front().event];
        const TextSetting& setting = trace_.textSetting(parts.front().setting);
        const ShowBytes& show =
            tools_.shown.at(parts.front().event, trace_.textPart(parts.back().part).endElement);
        Walk& walk = tools_.walk;
        walk.text.add(" ");
        settingWorks(show);
        walk.text.add("[");
        std::int32_t element = 0;
        const auto keepUpTo = [&](std::int32_t last) {
            for (; element < last; ++element) {
                walk.text.add(show.elements[static_cast<std::size_t>(element)]);
                walk.text.add(" ");
            }
        };
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const ShownPart& part = trace_.textPart(parts[i].part);
            keepUpTo(part.firstElement);
            const PaintedIndex source = first + static_cast<PaintedIndex>(i);
            if (isChanged(source)) {
                changeInPlace(parts[i], matching_.owners[source]);
                element = part.endElement;
            } else if (stays(source)) {
                keepUpTo(part.endElement);
            } else if (clips(setting.mode)) {
                walk.text.add("] TJ 7 Tr [");
                keepUpTo(part.endElement);
                walk.text.add("] TJ " + std::to_string(setting.mode) + " Tr [");
            } else {
                numberWorks(walk, part.advance, setting.unit);
                element = part.endElement;
            }
        }
        keepUpTo(static_cast<std::int32_t>(show.elements.size()));
        walk.text.add("] TJ\n");
        return {{event.start, event.end}, tools_.taken()};
    }

    bool staysAsItIs(PaintedIndex source) const { return stays(source) && !isChanged(source); }

private:
    bool stays(PaintedIndex source) const {
        const EditedIndex owner = matching_.owners[source];
        return owner != noSource && order_.stays[owner];
    }
    bool isChanged(PaintedIndex source) const {
        return stays(source) && matching_.objects[matching_.owners[source]].difference.any();
    }

    /// Shows a run as the artwork has it, and goes on where the page's own run ended.
    void changeInPlace(const PaintedArt& was, EditedIndex object) {
        const TraceEvent& event = trace_.events()[was.event];
        const TextSetting& setting = trace_.textSetting(was.setting);
        const TextObjectPlace& place = trace_.textPlace(event.behind.text);
        const ShownPart& part = trace_.textPart(was.part);
        Walk& walk = tools_.walk;
        walk.text.add("] TJ\n");
        lettersWorks(tools_, base_, was, artwork_.objects[object],
                     matching_.objects[object].difference);
        walk.text.add(tools_.state.bytesOf(setting.font - 1));
        textStateWorks(walk, {.characterSpacing = setting.characterSpacing,
                              .wordSpacing = setting.wordSpacing,
                              .horizontalScale = setting.horizontalScale,
                              .rise = setting.rise,
                              .mode = setting.mode});
        textMatrixWorks(walk, place.line);
        walk.text.add("[");
        numberWorks(walk, place.along - setting.advance + part.pen + part.advance, setting.unit);
    }

    /// What the operator does beside showing.
    void settingWorks(const ShowBytes& show) {
        if (show.word == "\"") {
            tools_.walk.text.add(std::string(show.before[0]) + " Tw " +
                                 std::string(show.before[1]) + " Tc ");
        }
        if (show.word == "\"" || show.word == "'") {
            tools_.walk.text.add("T* ");
        }
    }

    PatchTools& tools_;
    const ContentTrace& trace_;
    const BaseContent& base_;
    const EditedArtwork& artwork_;
    const Matching& matching_;
    const PaintOrder& order_;
};

} // namespace

bool isShownInPlace(const ContentTrace& trace, const PaintedArt& was,
                    const ArtDifference& difference) {
    ArtDifference paint = difference;
    paint.letters = false;
    paint.place = false;
    const TraceEvent& event = trace.events()[was.event];
    const Surroundings& here = event.behind;
    if (paint.any() || was.isDrawn || !here.isInText || (here.settings & softMaskSetting) != 0) {
        return false;
    }
    const TextObjectPlace& place = trace.textPlace(here.text);
    const TextSetting& setting = trace.textSetting(was.setting);
    return trace.events()[place.begin].behind.mark != here.mark && !place.addsToClip &&
           place.across == 0 && setting.unit != 0 && inverse(place.line) &&
           inverse(trace.matrix(here.matrix)) && setting.font != 0 &&
           trace.events()[setting.font - 1].role == OperatorRole::font;
}

void patchShows(PatchTools& tools, const BaseContent& base, const EditedArtwork& artwork,
                const Matching& matching, const PaintOrder& order, std::vector<Patch>& patches) {
    const std::span<const PaintedArt> painted = tools.trace.painted();
    ShowPatcher patcher(tools, base, artwork, matching, order);
    for (std::size_t first = 0; first < painted.size();) {
        std::size_t end = first + 1;
        bool allStay = patcher.staysAsItIs(static_cast<PaintedIndex>(first));
        for (; end < painted.size() && painted[end].event == painted[first].event; ++end) {
            allStay = allStay && patcher.staysAsItIs(static_cast<PaintedIndex>(end));
        }
        if (painted[first].setting != 0 && !allStay) {
            patches.push_back(patcher.patch(painted.subspan(first, end - first),
                                            static_cast<PaintedIndex>(first)));
        }
        first = end;
    }
}

void resumeTextWorks(PatchTools& tools, const TextObjectPlace& place) {
    Walk& walk = tools.walk;
    walk.text.add("BT\n");
    if (place.line != RealMatrix()) {
        walk.text.addMatrix(withoutSignedZeros(place.line));
        walk.text.add("Tm\n");
    }
    if (place.along != 0) {
        walk.text.add("[");
        numberWorks(walk, place.along, place.unit);
        walk.text.add("] TJ\n");
    }
}

} // namespace corvane
