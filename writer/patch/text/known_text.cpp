#include "writer/patch/text/known_text.h"

#include "runtime/memory.h"
#include "writer/patch/compare/matching.h"
#include "writer/patch/text/text_run.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvane {

namespace {

/// A line of the page or of the artwork: objects that follow one another.
template <class Index>
struct LineOf {
    Index first = 0;
    Index end = 0;
};
using PageLine = LineOf<PaintedIndex>;
using ArtLine = LineOf<EditedIndex>;

/// Lines of the same letters that are compared with one of the artwork: all that stand alike.
constexpr int mostCompared = 32;

/// Of a line in the list below, beside its letters.
constexpr std::size_t nodeSize = 128;

class KnownText {
public:
    KnownText(const BaseContent& base, EditedArtwork& artwork, bool sourcesMeanIt)
        : base_(base), artwork_(artwork), sourcesMeanIt_(sourcesMeanIt) {}

    void run() {
        std::vector<ArtLine> lines = unknownLines();
        if (lines.empty()) {
            return;
        }
        listPage();
        for (const ArtLine& line : lines) {
            know(line);
        }
    }

private:
    /// Lines of which no run names what it was; notes what the others are.
    std::vector<ArtLine> unknownLines() {
        std::vector<ArtLine> lines;
        isNamed_.assign(base_.trace.painted().size(), false);
        for (EditedIndex first = 0; first < artwork_.objects.size();) {
            EditedIndex end = first + 1;
            while (end < artwork_.objects.size() &&
                   artwork_.objects[end].art == artwork_.objects[first].art) {
                ++end;
            }
            if (artwork_.objects[first].kind == ArtKind::text && !noteNamed(first, end)) {
                lines.push_back({first, end});
            }
            first = end;
        }
        return lines;
    }

    bool noteNamed(EditedIndex first, EditedIndex end) {
        bool isAny = false;
        for (EditedIndex i = first; i < end && sourcesMeanIt_; ++i) {
            const PaintedIndex source = sourceOf(base_, artwork_.objects[i]);
            if (source != noSource) {
                isNamed_[source] = true;
                isAny = true;
            }
        }
        return isAny;
    }

    void listPage() {
        const std::span<const PaintedArt> painted = base_.trace.painted();
        for (PaintedIndex first = 0; first < painted.size();) {
            PaintedIndex end = first + 1;
            bool isFree =
                painted[first].setting != 0 && !painted[first].isDrawn && !isNamed_[first];
            while (end < painted.size() && painted[end].art == painted[first].art) {
                isFree = isFree && !isNamed_[end];
                ++end;
            }
            if (isFree) {
                addPage({first, end});
            }
            first = end;
        }
    }

    void addPage(const PageLine& line) {
        std::string letters;
        for (PaintedIndex i = line.first; i < line.end; ++i) {
            const PaintedArt& was = base_.trace.painted()[i];
            letters += runOf(was.art, base_.trace.textPart(was.part).run).text;
        }
        bytes_ += nodeSize + letters.size();
        charge_.resize(static_cast<std::int64_t>(bytes_));
        page_[std::move(letters)].push_back(line);
    }

    void know(const ArtLine& line) {
        std::string letters;
        for (EditedIndex i = line.first; i < line.end; ++i) {
            letters += runOf(artwork_.objects[i].art, artwork_.objects[i].run).text;
        }
        const auto found = page_.find(letters);
        if (found == page_.end()) {
            return;
        }
        std::vector<PageLine>& alike = found->second;
        auto best = alike.end();
        const auto end = alike.begin() + std::min<std::ptrdiff_t>(mostCompared, std::ssize(alike));
        for (auto at = alike.begin(); at != end; ++at) {
            const Likeness likeness = compare(line, *at);
            if (likeness == Likeness::same) {
                best = at;
                break;
            }
            best = likeness == Likeness::painted && best == alike.end() ? at : best;
        }
        if (best != alike.end()) {
            for (EditedIndex i = line.first; i < line.end; ++i) {
                artwork_.objects[i].shown = best->first + (i - line.first);
            }
            alike.erase(best);
        }
    }

    enum class Likeness { other, painted, same };

    /// Whether the line of the artwork is that one of the page, maybe painted otherwise.
    Likeness compare(const ArtLine& line, const PageLine& was) const {
        if (line.end - line.first != was.end - was.first) {
            return Likeness::other;
        }
        Likeness likeness = Likeness::same;
        for (PaintedIndex i = was.first; i < was.end; ++i) {
            const PaintedArt& painted = base_.trace.painted()[i];
            EditedObject object = artwork_.objects[line.first + (i - was.first)];
            object.start = base_.trace.textPart(painted.part).start;
            const ArtDifference difference = compareText(base_, painted, object);
            if (difference.letters || difference.place) {
                return Likeness::other;
            }
            likeness = difference.any() ? Likeness::painted : likeness;
        }
        return likeness;
    }

    const BaseContent& base_;
    EditedArtwork& artwork_;
    bool sourcesMeanIt_;
    std::vector<bool> isNamed_; ///< by what the page paints: text of the artwork says that it is it
    std::unordered_map<std::string, std::vector<PageLine>> page_; ///< by their letters
    std::size_t bytes_ = 0;
    ZoneCharge charge_;
};

} // namespace

void knowText(const BaseContent& base, EditedArtwork& artwork, bool sourcesMeanIt) {
    KnownText(base, artwork, sourcesMeanIt).run();
}

} // namespace corvane
