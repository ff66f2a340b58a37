#include "app/svg/tree/survey.h"

#include "app/svg/image_writer.h"
#include "app/svg/subpaths.h"
#include "app/svg/text/text_clip.h"

#include <utility>

namespace corvane {

namespace {

/// A group whose children are being looked at.
struct Visit {
    Art group = Art::null;
    std::size_t index = 0;
    Art clip = Art::null;
    Art next = Art::null;
    bool measured = false;
};

class Surveyor {
public:
    explicit Surveyor(const Document& document) : document_(document) {}

    std::vector<GroupSurvey> survey(Art top) {
        enter(top);
        while (!visits_.empty()) {
            const Art art = visits_.back().next;
            if (art == Art::null) {
                leave();
                continue;
            }
            visits_.back().next = document_.previousSibling(art);
            if (art == visits_.back().clip) {
                continue;
            }
            switch (svgObject(document_, art)) {
            case SvgObject::group:
                enter(art);
                break;
            case SvgObject::shape:
                addPainted(art, paintedExtent);
                break;
            case SvgObject::text:
                addText(art);
                break;
            case SvgObject::image:
                addPainted(art, placedExtent);
                break;
            case SvgObject::none:
                break;
            }
        }
        return std::move(groups_);
    }

private:
    void enter(Art group) {
        Visit visit;
        visit.group = group;
        visit.index = groups_.size();
        visit.clip = clipOf(document_, group);
        visit.next = document_.lastChild(group);
        GroupSurvey& survey = groups_.emplace_back();
        if (visit.clip != Art::null) {
            survey.clip = clipShape(document_, visit.clip);
        }
        visit.measured = survey.clip.rectangle || (!visits_.empty() && visits_.back().measured);
        if (!visit.measured) {
            survey.content = Extent::everything();
        }
        visits_.push_back(visit);
    }

    void addPainted(Art art, Extent (*extentOf)(const Document&, Art)) {
        GroupSurvey& survey = groups_[visits_.back().index];
        survey.drawn = true;
        survey.blends = survey.blends || blends(art);
        if (visits_.back().measured) {
            survey.content.add(extentOf(document_, art));
        }
    }

    /// How far letters reach is for their font to know.
    void addText(Art text) {
        GroupSurvey& survey = groups_[visits_.back().index];
        survey.drawn = true;
        survey.blends = survey.blends || blends(text);
        survey.content = Extent::everything();
    }

    bool blends(Art art) const { return document_.appearance(art).blend != BlendMode::normal; }

    void leave() {
        const Visit visit = visits_.back();
        visits_.pop_back();
        GroupSurvey& survey = groups_[visit.index];
        survey.end = groups_.size();
        if (visits_.empty() || !survey.drawn) {
            return;
        }
        GroupSurvey& outer = groups_[visits_.back().index];
        outer.drawn = true;
        const bool isOpen = survey.blends && !paintsApart(document_.appearance(visit.group));
        outer.blends = outer.blends || isOpen || blends(visit.group);
        outer.content.add(visit.clip == Art::null ? survey.content
                                                  : survey.content.within(survey.clip.bounds));
    }

    const Document& document_;
    std::vector<GroupSurvey> groups_;
    std::vector<Visit> visits_;
};

} // namespace

Art clipOf(const Document& document, Art group) {
    if (!document.clipped(group)) {
        return Art::null;
    }
    const Art first = document.firstChild(group);
    const bool clips =
        first != Art::null && (isShape(document, first) || isTextClip(document, first));
    return clips ? first : Art::null;
}

bool paintsApart(const Appearance& look) {
    return look.opacity != 1 || look.blend != BlendMode::normal || look.isIsolated ||
           look.mask != SoftMask::null;
}

std::vector<GroupSurvey> surveyGroups(const Document& document, Art top) {
    return Surveyor(document).survey(top);
}

} // namespace corvane
