#include "app/svg/text/text_writer.h"

#include "app/artwork/geometry/geometry.h"
#include "app/svg/markup.h"
#include "app/svg/paint/appearance_attributes.h"
#include "app/svg/paint/colour.h"
#include "app/svg/paint/paint_attributes.h"
#include "app/svg/style.h"
#include "app/svg/text/font_names.h"
#include "app/svg/text/letter_writer.h"
#include "app/svg/text/line_runs.h"
#include "app/svg/text/text_direction.h"

#include <algorithm>
#include <array>
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

class TextWriter {
public:
    TextWriter(TextOutput& out, const PaintServers& servers, Art text, const TextPlace& place,
               const TextLine& line, RunRange runs)
        : document_(servers.document()), out_(out), servers_(servers), place_(place), text_(text),
          line_(line), runs_(document_, text, runs), stretch_(stretchOf(line_.matrix)),
          letters_(out, document_, place.corner, line_, placesOf(runs)) {
        if (isPutInOrder()) {
            runs_.putInOrder(line_);
        }
        if (isJoined()) {
            runs_.join();
        }
    }

    void write();

private:
    bool isPutInOrder() const;
    bool isJoined() const;
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
    std::vector<PlacedGlyph> placesOf(RunRange) const;

    const Document& document_;
    TextOutput& out_;
    const PaintServers& servers_;
    const TextPlace& place_;
    Art text_;
    TextLine line_;
    LineRuns runs_;
    double stretch_; ///< of the line's matrix
    Shared shared_;
    bool needsBlanks_ = false;
    Fixed rise_ = 0; ///< of the run before
    LetterWriter letters_;
};

/// What gets a place of its own: nothing where letters follow one another.
std::vector<PlacedGlyph> TextWriter::placesOf(RunRange runs) const {
    const bool isAll = runs.end - runs.first == document_.textRunCount(text_);
    return isAll ? placed(document_, text_, place_.letters) : std::vector<PlacedGlyph>();
}

/// Letters that have places stand as they are seen, too, and so does what clips, which says of no
/// letter what it was.
bool TextWriter::isPutInOrder() const {
    return line_.order == TextOrder::visual && !line_.isVertical && line_.path.empty() &&
           line_.anchor != TextAnchor::middle && line_.length == 0 && !place_.isClip &&
           !letters_.isExact();
}

bool TextWriter::isJoined() const {
    return place_.joinsRuns && !line_.isVertical && line_.path.empty() && !letters_.isExact();
}

void TextWriter::findShared() {
    const TextRun first = runs_.at(0).run;
    for (std::size_t i = 0; i < runs_.count(); ++i) {
        const TextRun run = runs_.at(i).run;
        shared_.font = shared_.font && run.font == first.font;
        shared_.size = shared_.size && run.size == first.size;
        shared_.spacing = shared_.spacing && run.spacing == first.spacing;
        shared_.style = shared_.style && run.style == first.style &&
                        run.fillOpacity == first.fillOpacity &&
                        run.strokeOpacity == first.strokeOpacity &&
                        std::ranges::equal(run.decorations, first.decorations);
        if (line_.order == TextOrder::visual && holdsRightToLeft(run.text)) {
            letters_.overrideOrder();
        }
    }
    needsBlanks_ = line_.isVertical || letters_.isExact() || needsBlanksKept(runs_);
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
    const bool several = runs_.count() > 1 || isOnPath;
    const TextRun first = runs_.at(0).run;
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
    for (std::size_t i = 0; several && i < runs_.count(); ++i) {
        const auto [run, number] = runs_.at(i);
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
