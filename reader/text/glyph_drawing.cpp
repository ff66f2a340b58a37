#include "reader/text/glyph_drawing.h"

#include "host/matrix.h"
#include "reader/content/art.h"
#include "reader/content/inner_content.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"

#include <utility>

namespace corvane {

namespace {

/// A procedure shows no text, since it could show itself; what it leaves out is told later.
class ProcedureLimits {
public:
    explicit ProcedureLimits(Interpreter& interpreter)
        : interpreter_(interpreter),
          omissions_(std::exchange(interpreter.omissions, Omissions(Omissions::Quiet()))),
          readsText_(std::exchange(interpreter.readsText, false)) {}
    ~ProcedureLimits() {
        interpreter_.readsText = readsText_;
        interpreter_.omissions = omissions_;
    }
    ProcedureLimits(const ProcedureLimits&) = delete;
    ProcedureLimits& operator=(const ProcedureLimits&) = delete;

private:
    Interpreter& interpreter_;
    Omissions omissions_;
    bool readsText_;
};

} // namespace

GlyphDrawing::GlyphDrawing(Interpreter& interpreter, Type3Font& font, const RealMatrix& space)
    : interpreter_(interpreter), font_(font), space_(space), outer_(interpreter.state),
      omissions_(Omissions::Quiet()), hides_(outer_.fill.hidden || outer_.stroke.hidden) {}

void GlyphDrawing::add(std::uint8_t code, double pen) {
    const Object* const procedure = font_.procedureOf(code);
    if (hides_ || procedure == nullptr) {
        return;
    }
    hides_ = font_.paintsHidden(code);
    interpreter_.progress.charge(budget::innerContentTokens);
    const TextState& text = outer_.text;
    const RealMatrix placed{
        .a = text.size * text.horizontalScale, .d = text.size, .tx = pen, .ty = text.rise};
    const RealMatrix matrix = multiply(font_.matrix(), multiply(placed, space_));
    if (hides_ || !inverse(matrix)) {
        return;
    }
    draw(*procedure, matrix);
    if (hides_) {
        font_.notePaintsHidden(code);
    }
}

void GlyphDrawing::draw(const Object& procedure, const RealMatrix& matrix) {
    if (group_ == Art::null) {
        group_ = interpreter_.containers.make(ArtKind::group);
    }
    GraphicsState state = outer_;
    state.text = TextState();
    const ProcedureLimits limits(interpreter_);
    InnerContent content(interpreter_, 0, state, matrix, group_);
    content.run(procedure, font_.resources(),
                [](Interpreter& interpreter) { interpreter.level.isGlyph = true; });
    interpreter_.containers.finish();
    hides_ = interpreter_.omissions.holdsHidden();
    omissions_.add(interpreter_.omissions);
}

Art GlyphDrawing::end() {
    const Art group = std::exchange(group_, Art::null);
    if (group == Art::null) {
        return Art::null;
    }
    if (hides_ || firstChild(group) == Art::null) {
        callHost(slot::disposeArt, group);
        return Art::null;
    }
    interpreter_.omissions.add(omissions_);
    ContentLevel& level = interpreter_.level;
    if (level.tellsSources) {
        const ArtSource source = interpreter_.sourceFrom(level.span.start);
        callHost(slot::setArtSource, group, &source);
    }
    ++level.painted;
    return group;
}

} // namespace corvane
