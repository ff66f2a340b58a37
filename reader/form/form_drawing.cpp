#include "reader/form/form_drawing.h"

#include "objects/referenced.h"
#include "reader/content/appearance.h"
#include "reader/content/art.h"
#include "reader/content/inner_content.h"
#include "reader/form/form_entries.h"
#include "reader/form/form_path.h"
#include "reader/form/form_trace.h"
#include "reader/form/transparency_group.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "runtime/rules.h"

#include <memory>
#include <utility>

namespace corvane {

namespace {

class FormDrawing {
public:
    FormDrawing(Interpreter& interpreter, const Object& entry, const Object& stream)
        : interpreter_(interpreter), stream_(stream), object_(referenced(entry)) {}

    /// As an annotation of that number, or 0; below 0: as a form of the content at hand.
    void draw(std::int32_t annotation) {
        annotation_ = annotation;
        DocumentCache& cache = interpreter_.cache;
        if (!mayDraw()) {
            interpreter_.omissions.note(Omission::form);
            return;
        }
        interpreter_.progress.charge(budget::innerContentTokens);
        matrix_ = multiply(formMatrix(cache, stream_), interpreter_.state.exactCtm);
        content_ = ++interpreter_.forms;
        const std::optional<FormBox> box = boxEntry(cache, stream_, "BBox");
        if (!inverse(matrix_) || (box && box->isEmpty())) {
            return;
        }
        group_ = interpreter_.containers.make(ArtKind::group);
        clip_ = box ? clipGroup(group_, *box, matrix_) : Art::null;
        run();
        settle();
    }

private:
    bool mayDraw() const {
        return interpreter_.readsForms && !interpreter_.level.isGlyph &&
               !interpreter_.containers.isFull() &&
               InnerContent::mayEnter(interpreter_, object_.number) &&
               interpreter_.progress.hasRoom(interpreter_.cache.work.pageBytes);
    }

    void run() {
        const ObjectOwner own = lookupObject(interpreter_.cache, stream_, "Resources");
        const bool tellsSources = interpreter_.level.tellsSources;
        GraphicsState state = interpreter_.state;
        const std::optional<Appearance> whole =
            enterTransparencyGroup(interpreter_, stream_, state);
        appearance_ = whole.value_or(Appearance());
        if (interpreter_.level.trace != nullptr) {
            beginTrace(own.get(), whole.has_value(), state.transparency);
        }
        const std::int32_t blended = interpreter_.blended;
        const std::int32_t seenThrough = interpreter_.seenThrough;
        InnerContent content(interpreter_, object_.number, state, matrix_, group_);
        content.run(stream_, own.get(), [&](Interpreter& interpreter) {
            interpreter.level.tellsSources = tellsSources;
            interpreter.level.content = content_;
            interpreter.level.trace = trace_ == nullptr ? nullptr : &trace_->trace;
        });
        interpreter_.containers.finish();
        // Where nothing in it blends, it is the same to be isolated.
        appearance_.isIsolated = appearance_.isIsolated && interpreter_.blended != blended;
        if (appearance_.isKnockout && interpreter_.seenThrough != seenThrough) {
            interpreter_.omissions.note(Omission::transparency); // no markup says it
        }
    }

    void beginTrace(const Object& resources, bool isWhole, const Transparency& inside) {
        trace_ = std::make_unique<FormTrace>();
        trace_->hasResources = typeObject(resources) == ObjectType::dictionary;
        trace_->content = content_;
        trace_->object = object_.number;
        trace_->generation = object_.generation;
        trace_->stream = sharedObject(stream_);
        trace_->resources =
            sharedObject(trace_->hasResources ? resources : interpreter_.cache.resources.get());
        trace_->isWhole = isWhole;
        trace_->inherited = {.fillOpacity = inside.fillOpacity,
                             .strokeOpacity = inside.strokeOpacity,
                             .blend = inside.blend,
                             .mask = inside.mask};
        trace_->matrix = matrix_;
    }

    /// The group stays if it holds something.
    void settle() {
        const Art first = firstChild(group_);
        if (first == clip_ && (first == Art::null || nextSibling(first) == Art::null)) {
            callHost(slot::disposeArt, std::exchange(group_, Art::null));
            clip_ = Art::null;
        } else {
            tell();
            tellAppearanceAsOne(interpreter_, group_, appearance_);
        }
        if (trace_ != nullptr) {
            trace_->group = group_;
            trace_->box = clip_;
            interpreter_.level.trace->addForm(std::move(trace_));
        }
    }

    void tell() {
        const bool isForm = annotation_ < 0;
        const FormFacts facts{.object = isForm ? object_.number : annotation_, .content = content_};
        callHost(slot::setForm, group_, &facts);
        ContentLevel& level = interpreter_.level;
        if (isForm && level.tellsSources) {
            const ArtSource source = interpreter_.sourceFrom(level.span.start);
            callHost(slot::setArtSource, group_, &source);
        }
        level.placed = group_;
        ++level.painted;
    }

    Interpreter& interpreter_;
    const Object& stream_;
    std::int32_t annotation_ = -1;
    ObjectIdentifier object_;
    std::int32_t content_ = 0;
    RealMatrix matrix_; ///< from the form's space to the artboard
    Art group_ = Art::null;
    Art clip_ = Art::null;
    Appearance appearance_;
    std::unique_ptr<FormTrace> trace_;
};

} // namespace

bool hostHoldsForms() {
    const auto extension = knownExtension();
    return rules().readsForms && extension && extension->version >= 6;
}

void drawForm(Interpreter& interpreter, const Object& entry, const Object& stream) {
    FormDrawing(interpreter, entry, stream).draw(-1);
}

void drawAppearance(Interpreter& interpreter, const Object& entry, const Object& stream,
                    std::int32_t annotation) {
    FormDrawing(interpreter, entry, stream).draw(annotation);
}

} // namespace corvane
