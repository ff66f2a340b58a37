#include "writer/patch/text/show_patches.h"

#include "host/matrix.h"
#include "runtime/exception.h"
#include "writer/patch/text/show_bytes.h"

#include <span>
#include <string>

namespace corvane {

namespace {

/// Text render modes from here on add the text to the clip, the last one does nothing else (PDF
/// Reference, 5.2.5).
constexpr std::int32_t firstClippingMode = 4;

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
    ShowPatcher(PatchTools& tools, const Matching& matching, const PaintOrder& order)
        : tools_(tools), trace_(tools.trace), matching_(matching), order_(order) {}

    /// The parts of one operator, of which not all stay.
    Patch patch(std::span<const PaintedArt> parts, PaintedIndex first) {
        const TraceEvent& event = trace_.events()[parts.front().event];
        const TextSetting& setting = trace_.textSetting(parts.front().setting);
        bytes_.clear();
        tools_.bytes.append(bytes_, {event.start, event.end});
        const std::optional<ShowBytes> show = showBytes(bytes_);
        const std::int32_t end = trace_.textPart(parts.back().part).endElement;
        if (!show || static_cast<std::size_t>(end) > show->elements.size()) {
            failException(Exception::unpatchable);
        }
        Walk& walk = tools_.walk;
        walk.text.add(" ");
        settingWorks(*show);
        walk.text.add("[");
        std::int32_t element = 0;
        const auto keepUpTo = [&](std::int32_t last) {
            for (; element < last; ++element) {
                walk.text.add(show->elements[static_cast<std::size_t>(element)]);
                walk.text.add(" ");
            }
        };
        const bool clips = setting.mode >= firstClippingMode;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const ShownPart& part = trace_.textPart(parts[i].part);
            keepUpTo(part.firstElement);
            if (stays(first + static_cast<PaintedIndex>(i))) {
                keepUpTo(part.endElement);
            } else if (clips) {
                walk.text.add("] TJ 7 Tr [");
                keepUpTo(part.endElement);
                walk.text.add("] TJ " + std::to_string(setting.mode) + " Tr [");
            } else {
                numberWorks(walk, part.advance, setting.unit);
                element = part.endElement;
            }
        }
        keepUpTo(static_cast<std::int32_t>(show->elements.size()));
        walk.text.add("] TJ\n");
        return {{event.start, event.end}, tools_.taken()};
    }

    bool stays(PaintedIndex source) const {
        const EditedIndex owner = matching_.owners[source];
        return owner != noSource && order_.stays[owner];
    }

private:
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
    const Matching& matching_;
    const PaintOrder& order_;
    std::string bytes_;
};

} // namespace

void patchShows(PatchTools& tools, const Matching& matching, const PaintOrder& order,
                std::vector<Patch>& patches) {
    const std::span<const PaintedArt> painted = tools.trace.painted();
    ShowPatcher patcher(tools, matching, order);
    for (std::size_t first = 0; first < painted.size();) {
        std::size_t end = first + 1;
        bool allStay = patcher.stays(static_cast<PaintedIndex>(first));
        for (; end < painted.size() && painted[end].event == painted[first].event; ++end) {
            allStay = allStay && patcher.stays(static_cast<PaintedIndex>(end));
        }
        if (painted[first].setting != 0 && !allStay) {
            patches.push_back(patcher.patch(painted.subspan(first, end - first),
                                            static_cast<PaintedIndex>(first)));
        }
        first = end;
    }
}

void resumeTextWorks(PatchTools& tools, const TextPlace& place) {
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
