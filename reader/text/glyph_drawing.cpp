#include "reader/text/glyph_drawing.h"

#include "host/matrix.h"
#include "reader/content/art.h"
#include "reader/content/content.h"
#include "runtime/callbacks.h"

#include <span>
#include <utility>

namespace corvane {

namespace {

/// What a glyph counts as beside the tokens of its procedure: to set up its filters takes as long.
constexpr std::int64_t tokensOfGlyph = 500;

/// A procedure runs in a state and in groups of its own. It shows no text: it could show itself.
class ProcedureScope {
public:
    ProcedureScope(Interpreter& interpreter, const GraphicsState& state, const RealMatrix& matrix,
                   Art group)
        : interpreter_(interpreter), formerState_(std::exchange(interpreter.state, state)),
          formerOmissions_(std::exchange(interpreter.omissions, Omissions(Omissions::Quiet()))),
          place_(interpreter.progress.place()),
          readsText_(std::exchange(interpreter.readsText, false)) {
        interpreter.state.exactCtm = matrix;
        interpreter.state.text = TextState();
        Containers own;
        own.open(group, interpreter.containers.nesting());
        containers_ = std::exchange(interpreter.containers, std::move(own));
    }
    ~ProcedureScope() {
        interpreter_.containers = std::move(containers_);
        interpreter_.readsText = readsText_;
        interpreter_.progress.setPlace(place_);
        interpreter_.omissions = formerOmissions_;
        interpreter_.state = std::move(formerState_);
    }
    ProcedureScope(const ProcedureScope&) = delete;
    ProcedureScope& operator=(const ProcedureScope&) = delete;

private:
    Interpreter& interpreter_;
    GraphicsState formerState_;
    Omissions formerOmissions_;
    Containers containers_;
    ContentProgress::Place place_;
    bool readsText_;
};

ObjectOwner shared(const Object& object) {
    retainObject(object);
    return ObjectOwner(object);
}

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
    interpreter_.progress.charge(tokensOfGlyph);
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
    const Object& own = font_.resources();
    const ProcedureScope scope(interpreter_, outer_, matrix, group_);
    ContentScope content(interpreter_, shared(typeObject(own) == ObjectType::dictionary
                                                  ? own
                                                  : interpreter_.cache.resources.get()));
    interpreter_.level.isGlyph = true;
    const ObjectOwner stream = shared(procedure);
    runContent(interpreter_, std::span(&stream, 1));
    content.leave();
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
        const ArtSource source{level.span.start, level.span.end, level.painted};
        callHost(slot::setArtSource, group, &source);
    }
    ++level.painted;
    return group;
}

} // namespace corvane
