#include "app/svg/text/text_writer.h"

#include "app/artwork/geometry.h"
#include "app/svg/markup.h"
#include "app/svg/paint/appearance_attributes.h"
#include "app/svg/paint/colour.h"
#include "app/svg/paint/paint_attributes.h"
#include "app/svg/style.h"
#include "app/svg/text/font_names.h"
#include "app/svg/text/joined_runs.h"
#include "app/svg/text/letter_writer.h"
#include "app/svg/text/line_order.h"
#include "app/svg/text/text_direction.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvane {

namespace {

/// What ids of paths of letters begin with; their numbers are those of the first runs.
constexpr std::string_view curveIdPrefix = "curve";
constexpr std::string_view clipCurveIdPrefix = "clipcurve";

/// Which attributes all runs of a text have in common.
struct Shared {
    bool font = true;
    bool size = true;
    bool spacing = true;
    bool style = true;
};

/// By how much lines grow in width; 1 where that would be without end.
double stretchOf(const Matrix& matrix) {
    const double stretch = meanStretch(realMatrix(matrix));
    return stretch > 0 ? stretch : 1;
}

/// Runs of a text object that make one line.
struct RunRange {
    std::int32_t first = 0;
    std::int32_t end = 0;
};

class TextWriter {
public:
    TextWriter(TextOutput& out, const PaintServers& servers, Art text, const TextPlace& place,
               const TextLine& line, RunRange runs)
        : document_(servers.document()), out_(out), servers_(servers), place_(place), text_(text),
          line_(line), runs_(runs), stretch_(stretchOf(line_.matrix)),
          letters_(out, document_, place.corner, line_, placesOf(place)) {
        putInOrder();
        numberRuns();
        joinRuns();
    }

    void write();

private:
    /// A run as it is written, and its number among those of the line.
    struct Written {
        TextRun run;
        std::uint32_t number = 0;
    };

    void putInOrder();
    void numberRuns();
    void joinRuns();
    Written runAt(std::size_t place) const;
    std::size_t runCount() const {
        return joined_.empty() ? static_cast<std::size_t>(runs_.end - runs_.first) : joined_.size();
    }
    void findShared();
    void writePath();
    void writePlace();
    void writeLineAttributes();
    void startPath();
    void writeCurveName();
    void writeFont(const TextRun&);
    void writeAttributes(const TextRun&, Shared which);
    void writeDecorations(const TextRun&);
    void writeOwn(const TextRun&, std::uint32_t number);
    std::vector<PlacedGlyph> placesOf(const TextPlace&) const;

    const Document& document_;
    TextOutput& out_;
    const PaintServers& servers_;
    const TextPlace& place_;
    Art text_;
    TextLine line_;
    RunRange runs_;
    std::vector<OrderedRun> ordered_; ///< those runs as they are read, where that is another order
    std::vector<std::uint32_t> numbers_; ///< of those runs; empty: as they stand
    std::vector<JoinedRun> joined_;      ///< all of them; empty: none is joined with another
    double stretch_;                     ///< of the line's matrix
    Shared shared_;
    bool needsBlanks_ = false;
    Fixed rise_ = 0; ///< of the run before
    LetterWriter letters_;
};

/// What gets a place of its own: nothing where letters follow one another.
std::vector<PlacedGlyph> TextWriter::placesOf(const TextPlace& place) const {
    const bool isAll = runs_.end - runs_.first == document_.textRunCount(text_);
    return isAll ? placed(document_, text_, place.letters) : std::vector<PlacedGlyph>();
}

/// Lines of a page stand as they are seen. Letters that have places do so here, too, and so does
/// what clips, which says of no letter what it was.
void TextWriter::putInOrder() {
    if (line_.order != TextOrder::visual || line_.isVertical || !line_.path.empty() ||
        line_.anchor == TextAnchor::middle || line_.length != 0 || place_.isClip ||
        letters_.isExact()) {
        return;
    }
    std::vector<TextRun> runs;
    bool hasRightToLeft = false;
    for (std::size_t i = 0; i < runCount(); ++i) {
        runs.push_back(runAt(i).run);
        hasRightToLeft = hasRightToLeft || holdsRightToLeft(runs.back().text);
    }
    if (!hasRightToLeft) {
        return;
    }
    if (std::optional<OrderedLine> read = asRead(runs)) {
        line_.order = read->order;
        ordered_ = std::move(read->runs);
        line_ = placedWhereRead(line_, runAt(0).run.size);
    }
}

TextWriter::Written TextWriter::runAt(std::size_t place) const {
    if (!joined_.empty()) {
        return {joined_[place].whole(), joined_[place].number};
    }
    const std::size_t number = ordered_.empty() ? place : ordered_[place].run;
    TextRun run = document_.textRun(text_, runs_.first + static_cast<std::int32_t>(number));
    if (!ordered_.empty()) {
        run.text = ordered_[place].text;
        run.pieces = ordered_[place].pieces;
    }
    return {run, numbers_.empty() ? static_cast<std::uint32_t>(number) : numbers_[number]};
}

/// Runs of a page count in the order in which it shows them, which may be from the right.
void TextWriter::numberRuns() {
    std::vector<std::int32_t> ordinals;
    for (std::int32_t run = runs_.first; run < runs_.end; ++run) {
        const ArtSource source = document_.textRun(text_, run).source;
        if (source.end == 0) {
            return;
        }
        ordinals.push_back(source.ordinal);
    }
    if (std::ranges::is_sorted(ordinals)) {
        return;
    }
    std::vector<std::size_t> shown(ordinals.size());
    std::iota(shown.begin(), shown.end(), std::size_t{0});
    std::ranges::stable_sort(shown, {}, [&](std::size_t run) { return ordinals[run]; });
    numbers_.resize(shown.size());
    for (std::size_t i = 0; i < shown.size(); ++i) {
        numbers_[shown[i]] = static_cast<std::uint32_t>(i);
    }
}

/// Not where letters have places, or where runs stand in another order than they are written.
void TextWriter::joinRuns() {
    if (runCount() == 1 || !ordered_.empty() || !numbers_.empty() || line_.isVertical ||
        !line_.path.empty() || !place_.joinsRuns || letters_.isExact()) {
        return;
    }
    std::vector<TextRun> runs;
    for (std::size_t i = 0; i < runCount(); ++i) {
        runs.push_back(runAt(i).run);
    }
    joined_ = joinedRuns(runs);
    if (joined_.size() == runs.size()) {
        joined_.clear();
    }
}

/// XML drops blanks at the ends, and makes one of several.
bool losesBlanks(std::string_view text, bool& afterBlank) {
    bool loses = false;
    for (const char c : text) {
        loses = loses || (c == ' ' && afterBlank);
        afterBlank = c == ' ';
    }
    return loses;
}

/// Whether a blank stands where one element of the text ends and another begins: some programs drop
/// those.
bool bordersOnBlank(const TextRun& run, bool isAlone) {
    const auto isBlank = [&](std::size_t place) { return run.text[place] == ' '; };
    return (!isAlone && (isBlank(0) || isBlank(run.text.size() - 1))) ||
           std::ranges::any_of(run.pieces, [&](const TextPiece& piece) {
               const auto place = static_cast<std::size_t>(piece.start);
               return place != 0 && (isBlank(place - 1) || isBlank(place));
           });
}

void TextWriter::findShared() {
    const TextRun first = runAt(0).run;
    const bool isAlone = runCount() == 1;
    bool afterBlank = true;
    for (std::size_t i = 0; i < runCount(); ++i) {
        const TextRun run = runAt(i).run;
        shared_.font = shared_.font && run.font == first.font;
        shared_.size = shared_.size && run.size == first.size;
        shared_.spacing = shared_.spacing && run.spacing == first.spacing;
        shared_.style = shared_.style && run.style == first.style &&
                        run.fillOpacity == first.fillOpacity &&
                        run.strokeOpacity == first.strokeOpacity &&
                        std::ranges::equal(run.decorations, first.decorations);
        needsBlanks_ = losesBlanks(run.text, afterBlank) || bordersOnBlank(run, isAlone) ||
                       line_.isVertical || needsBlanks_;
        if (line_.order == TextOrder::visual && holdsRightToLeft(run.text)) {
            letters_.overrideOrder();
        }
    }
    needsBlanks_ = needsBlanks_ || afterBlank || letters_.isExact();
}

void TextWriter::writeCurveName() {
    out_.text(place_.isClip ? clipCurveIdPrefix : curveIdPrefix);
    out_.number(std::int64_t{place_.number} << 16);
    if (place_.content != 0) {
        out_.text("f");
        out_.number(std::int64_t{place_.content} << 16);
    }
}

/// What letters stand on, in front of their text. The transform of the text is undone.
void TextWriter::writePath() {
    out_.text("<defs><path id=\"");
    writeCurveName();
    out_.text("\"");
    const Matrix turned{line_.matrix.a, -line_.matrix.b, -line_.matrix.c, line_.matrix.d, 0, 0};
    if (const auto back = inverse(realMatrix(turned)); back && !isPlainSpace(line_.matrix)) {
        const RealMatrix undone = withoutSignedZeros(*back);
        out_.text(" transform=\"matrix(");
        for (const double value : {undone.a, undone.b, undone.c, undone.d}) {
            writeDouble(out_, value);
            out_.text(" ");
        }
        out_.text("0 0)\"");
    }
    out_.text(" d=\"");
    writeSegmentData(out_, line_.path, line_.isPathClosed, place_.corner);
    out_.text("\"/></defs>");
}

void TextWriter::startPath() {
    out_.text("<textPath href=\"#");
    writeCurveName();
    out_.text("\"");
    if (line_.pathStart != 0) {
        writeNumberAttribute(out_, "startOffset", line_.pathStart);
    }
    out_.text(">");
}

/// What is said of the line as a whole.
void TextWriter::writeLineAttributes() {
    if (line_.isVertical) {
        writePlainAttribute(out_, "data-column", "true");
        writePlainAttribute(out_, "text-anchor", "middle");
    }
    if (needsBlanks_) {
        writePlainAttribute(out_, "xml:space", "preserve");
    }
    letters_.writeOrder();
    if (line_.isVertical) {
        return;
    }
    const bool isRightToLeft = line_.order == TextOrder::rightToLeft;
    if (isRightToLeft) {
        writePlainAttribute(out_, "direction", "rtl");
    }
    const TextAnchor first = isRightToLeft ? TextAnchor::end : TextAnchor::start;
    if (line_.anchor != first) {
        writePlainAttribute(out_, "text-anchor",
                            line_.anchor == TextAnchor::middle ? "middle" : "end");
    }
    if (line_.length != 0) {
        writeNumberAttribute(out_, "textLength", line_.length);
        if (line_.stretchesLetters) {
            writePlainAttribute(out_, "lengthAdjust", "spacingAndGlyphs");
        }
    }
}

/// From the line's space, turned to point down as SVG does, to the page.
void TextWriter::writePlace() {
    const Matrix& matrix = line_.matrix;
    const bool isOnPath = !line_.path.empty();
    const std::int64_t x = isOnPath ? 0 : place_.corner.x(matrix.tx);
    const std::int64_t y = isOnPath ? 0 : place_.corner.y(matrix.ty);
    if (isPlainSpace(matrix)) {
        if (!isOnPath) {
            writeNumberAttribute(out_, "x", x);
            writeNumberAttribute(out_, "y", y);
        }
        return;
    }
    const std::array<std::int64_t, 6> turned{
        matrix.a, -std::int64_t{matrix.b}, -std::int64_t{matrix.c}, matrix.d, x, y};
    out_.text(" transform=\"matrix(");
    for (std::size_t i = 0; i < turned.size(); ++i) {
        out_.text(i == 0 ? "" : " ");
        out_.number(turned[i]);
    }
    out_.text(")\"");
}

void TextWriter::writeFont(const TextRun& run) {
    const FontFacts font = document_.fonts().facts(run.font);
    out_.text(" font-family=\"");
    writeFamilies(out_, font, 0);
    out_.text("\"");
    if (font.weight != FontFacts{}.weight) {
        writePlainAttribute(out_, "font-weight", std::to_string(font.weight));
    }
    if (font.italic) {
        writePlainAttribute(out_, "font-style", "italic");
    }
}

/// Those of the attributes of a run that `which` names.
void TextWriter::writeAttributes(const TextRun& run, Shared which) {
    if (which.font) {
        writeFont(run);
    }
    if (which.size) {
        writeNumberAttribute(out_, "font-size", run.size);
    }
    if (which.spacing && run.spacing != 0) {
        writeNumberAttribute(out_, "letter-spacing", run.spacing);
    }
    if (which.style && !place_.isClip) {
        writePaintedStyle(out_, run.style, servers_, stretch_);
        writePaintOpacities(out_, run.style, run.fillOpacity, run.strokeOpacity);
        writeDecorations(run);
    }
}

/// Lines along the letters. Those of elements within one another have one colour here.
void TextWriter::writeDecorations(const TextRun& run) {
    std::string lines;
    TextDecoration last;
    for (const TextDecoration& each : run.decorations) {
        for (const auto& [isThere, name] :
             {std::pair(each.isUnder, "underline"), std::pair(each.isOver, "overline"),
              std::pair(each.isThrough, "line-through")}) {
            if (isThere && lines.find(name) == std::string::npos) {
                lines += (lines.empty() ? "" : " ") + std::string(name);
            }
        }
        last = each;
    }
    if (lines.empty()) {
        return;
    }
    writePlainAttribute(out_, "text-decoration", lines);
    if (last.hasColour) {
        const PaintNames names{"text-decoration-color", {}, {}, {}, {}, {}, {}, {}};
        writeColour(out_, names, plainColour(screenColour(last.colour)), false);
    }
    if (last.thickness != 0) {
        writeNumberAttribute(out_, "text-decoration-thickness", last.thickness);
    }
}

/// What each run has for itself, and where its baseline and its first letter are moved to.
void TextWriter::writeOwn(const TextRun& run, std::uint32_t number) {
    if (!place_.isClip) {
        writeShapeId(out_, place_.content, number);
    }
    if (run.source.end != 0 && !place_.isClip) {
        writeArtSource(out_, "data-source", run.source, place_.base);
    }
    if (line_.isVertical) {
        return;
    }
    if (run.rise != rise_) {
        writeNumberAttribute(out_, "dy", std::int64_t{rise_} - run.rise);
        rise_ = run.rise;
    }
    if (!letters_.isExact() && !run.pieces.empty() && run.pieces[0].start == 0 &&
        run.pieces[0].face == 0 && run.pieces[0].turn == 0) {
        letters_.writeShift("dx", run.pieces[0].shift, run.size);
    }
}

void TextWriter::write() {
    findShared();
    const bool isOnPath = !line_.path.empty();
    const bool several = runCount() > 1 || isOnPath;
    const TextRun first = runAt(0).run;
    if (isOnPath) {
        writePath();
    }
    out_.text("<text");
    if (!several) {
        writeOwn(first, place_.number);
    }
    writeAppearance(out_, place_.appearance, {});
    if (place_.hidden) {
        writePlainAttribute(out_, "display", "none");
    } else if (!place_.clip.empty()) {
        writePlainAttribute(out_, "clip-path", place_.clip);
    }
    writePlace();
    writeLineAttributes();
    if (letters_.isExact()) {
        letters_.writeSum();
    }
    writeAttributes(first, shared_);
    out_.text(">");
    if (isOnPath) {
        startPath();
    }
    if (!several) {
        letters_.writeLetters(first);
    }
    const Shared own{!shared_.font, !shared_.size, !shared_.spacing, !shared_.style};
    for (std::size_t i = 0; several && i < runCount(); ++i) {
        const auto [run, number] = runAt(i);
        out_.text("<tspan");
        writeOwn(run, place_.number + number);
        letters_.writeOrder();
        writeAttributes(run, own);
        out_.text(">");
        letters_.writeLetters(run);
        out_.text("</tspan>");
    }
    out_.text(isOnPath ? "</textPath></text>" : "</text>");
}

} // namespace

void writeText(TextOutput& out, const PaintServers& servers, Art text, const TextPlace& place) {
    const Document& document = servers.document();
    const std::int32_t count = document.textRunCount(text);
    TextLine line = document.textLine(text);
    TextPlace at = place;
    RunRange runs;
    while (runs.first < count) {
        if (const TextRun first = document.textRun(text, runs.first); first.line) {
            line.matrix = *first.line;
        }
        runs.end = runs.first + 1;
        while (runs.end < count && !document.textRun(text, runs.end).line) {
            ++runs.end;
        }
        TextWriter(out, servers, text, at, line, runs).write();
        at.number += static_cast<std::uint32_t>(runs.end - runs.first);
        runs.first = runs.end;
    }
}

} // namespace corvane
