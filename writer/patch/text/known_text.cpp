#include "writer/patch/text/known_text.h"

#include "runtime/fixed.h"
#include "runtime/memory.h"
#include "writer/patch/compare/matching.h"
#include "writer/patch/text/text_run.h"

#include <cmath>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
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

/// Points of a side of the squares by which lines are found: lines that stand alike are in one, or
/// in two that touch.
constexpr double squareSide = 8 * placeRoom;

/// Lines of the same letters in one square that are compared with one of the artwork: as many
/// copies of a line lie over one another.
constexpr int mostCompared = 32;

/// Of a line in the lists below, beside its letters.
constexpr std::size_t nodeSize = 192;

/// A place of a line: letters by their number, and a square.
struct LineKey {
    std::size_t letters = 0;
    std::int64_t column = 0;
    std::int64_t row = 0;

    auto operator<=>(const LineKey&) const = default;
};

std::int64_t squareOf(double place) {
    return static_cast<std::int64_t>(std::floor(place / squareSide));
}

/// That place of the line, on the artboard.
RealPoint placeOf(Art text, double along) {
    const RealMatrix frame = frameOf(text, runOf(text, 0), along);
    return {frame.tx, frame.ty};
}

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
        isTaken_.assign(base_.trace.painted().size(), false);
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
        byRun_.resize(painted.size());
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

    PaintedIndex runNumber(PaintedIndex painted) const {
        return static_cast<PaintedIndex>(
            base_.trace.textPart(base_.trace.painted()[painted].part).run);
    }

    void addPage(const PageLine& line) {
        std::string letters;
        for (PaintedIndex i = line.first; i < line.end; ++i) {
            if (runNumber(i) >= line.end - line.first) {
                return; // an operator failed behind its first run
            }
            byRun_[line.first + runNumber(i)] = i;
        }
        for (PaintedIndex run = line.first; run < line.end; ++run) {
            const PaintedArt& was = base_.trace.painted()[byRun_[run]];
            letters += runOf(was.art, base_.trace.textPart(was.part).run).text;
        }
        bytes_ += nodeSize + letters.size();
        charge_.resize(static_cast<std::int64_t>(bytes_));
        const std::size_t number =
            letters_.try_emplace(std::move(letters), letters_.size()).first->second;
        for (const LineKey& key : keysOf(number, line)) {
            page_.emplace(key, line);
        }
    }

    /// Where it begins. A line from the right may have its place at its end, too.
    std::vector<LineKey> keysOf(std::size_t letters, const PageLine& line) const {
        const Art text = base_.trace.painted()[line.first].art;
        std::vector<double> places = {0};
        if (const Fixed reach = lineOf(text).reach; reach != 0) {
            places.push_back(realFromFixed(reach));
        }
        std::vector<LineKey> keys;
        for (const double along : places) {
            const RealPoint place = placeOf(text, along);
            keys.push_back({letters, squareOf(place.x), squareOf(place.y)});
        }
        return keys;
    }

    void know(const ArtLine& line) {
        std::string letters;
        for (EditedIndex i = line.first; i < line.end; ++i) {
            letters += runOf(artwork_.objects[i].art, artwork_.objects[i].run).text;
        }
        const auto number = letters_.find(letters);
        if (number == letters_.end()) {
            return;
        }
        const RealPoint place = placeOf(artwork_.objects[line.first].art, 0);
        Best best{.line = page_.end()};
        for (std::int64_t x = squareOf(place.x - placeRoom); x <= squareOf(place.x + placeRoom);
             ++x) {
            for (std::int64_t y = squareOf(place.y - placeRoom); y <= squareOf(place.y + placeRoom);
                 ++y) {
                best = better(best, bestIn({number->second, x, y}, line));
            }
        }
        if (best.line != page_.end()) {
            for (EditedIndex i = line.first; i < line.end; ++i) {
                artwork_.objects[i].shown = byRun_[best.line->second.first + (i - line.first)];
            }
            isTaken_[best.line->second.first] = true;
        }
    }

    using PageLines = std::multimap<LineKey, PageLine>;
    enum class Likeness { other, painted, same };

    /// A line of the page; the end where it is another.
    struct Best {
        PageLines::iterator line;
        Likeness likeness = Likeness::other;
    };

    static Best better(Best a, Best b) {
        const bool isEarlier = a.likeness == b.likeness && a.likeness != Likeness::other &&
                               b.line->second.first < a.line->second.first;
        return b.likeness > a.likeness || isEarlier ? b : a;
    }

    Best bestIn(const LineKey& key, const ArtLine& line) {
        Best best{.line = page_.end()};
        auto [at, end] = page_.equal_range(key);
        for (int i = 0; at != end && i < mostCompared && best.likeness != Likeness::same;) {
            if (isTaken_[at->second.first]) {
                at = page_.erase(at);
                continue;
            }
            if (const Likeness likeness = compare(line, at->second); likeness > best.likeness) {
                best = {at, likeness};
            }
            ++at;
            ++i;
        }
        return best;
    }

    /// Whether the line of the artwork is that one of the page, maybe painted otherwise.
    Likeness compare(const ArtLine& line, const PageLine& was) const {
        if (line.end - line.first != was.end - was.first) {
            return Likeness::other;
        }
        const auto start =
            startLike(base_.trace.painted()[was.first].art, artwork_.objects[line.first].art);
        Likeness likeness = start ? Likeness::same : Likeness::other;
        for (PaintedIndex i = was.first; start && i < was.end; ++i) {
            const PaintedArt& painted = base_.trace.painted()[byRun_[i]];
            EditedObject object = artwork_.objects[line.first + (i - was.first)];
            object.start = *start + base_.trace.textPart(painted.part).start;
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
    std::vector<bool> isTaken_; ///< by the first of a line: a line of the artwork is it; the list
                                ///< may still have it
    /// What the runs of a line are, from where the line's first object is.
    std::vector<PaintedIndex> byRun_;
    std::unordered_map<std::string, std::size_t> letters_; ///< of lines: their number
    PageLines page_;                                       ///< of a key: in the page's order
    std::size_t bytes_ = 0;
    ZoneCharge charge_;
};

} // namespace

void knowText(const BaseContent& base, EditedArtwork& artwork, bool sourcesMeanIt) {
    KnownText(base, artwork, sourcesMeanIt).run();
}

} // namespace corvane
