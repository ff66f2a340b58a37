#include "writer/art/drawn_works.h"

#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/rules.h"
#include "writer/art/object_works.h"

#include <initializer_list>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

/// One call of the host that draws; what it calls back has no other way to the walk.
class HostDrawing {
public:
    explicit HostDrawing(Walk& walk)
        : walk_(walk), outer_(current), depth_(outer_ == nullptr ? 1 : outer_->depth_ + 1) {
        if (depth_ > budget::patternNesting) {
            failException(Exception::limit);
        }
        current = this;
    }
    ~HostDrawing() { current = outer_; }
    HostDrawing(const HostDrawing&) = delete;
    HostDrawing& operator=(const HostDrawing&) = delete;

    /// Calls the host; raises what was raised in between first, otherwise what the call raised.
    template <class Call>
    void run(Call&& call) {
        const Exception result = guarded(std::forward<Call>(call));
        resetException();
        raiseException(failure_ != Exception::none ? failure_ : result);
    }

    /// Runs what the host called back.
    template <class Body>
    static void answer(Body&& body) {
        HostDrawing* const drawing = current;
        if (drawing == nullptr || drawing->failure_ != Exception::none) {
            return;
        }
        drawing->failure_ = guarded([&] { body(drawing->walk_); });
        resetException();
    }

private:
    static HostDrawing* current;

    Walk& walk_;
    HostDrawing* outer_;
    std::int32_t depth_;
    Exception failure_ = Exception::none;
};

HostDrawing* HostDrawing::current = nullptr;

void answerNumbers(std::initializer_list<Fixed> numbers, std::string_view word) {
    HostDrawing::answer([&](Walk& walk) {
        for (const Fixed number : numbers) {
            walk.text.add(number);
        }
        walk.text.add(word);
    });
}

void answerPoints(std::initializer_list<const Point*> points, std::string_view word) {
    HostDrawing::answer([&](Walk& walk) {
        for (const Point* const point : points) {
            if (point == nullptr) {
                failException(Exception::host);
            }
            walk.text.add(*point);
        }
        walk.text.add(word);
    });
}

void setGray(Fixed level) {
    answerNumbers({level}, "g\n");
}

void setCMYK(Fixed cyan, Fixed magenta, Fixed yellow, Fixed black) {
    answerNumbers({cyan, magenta, yellow, black}, "k\n");
}

void setRGB(Fixed red, Fixed green, Fixed blue) {
    answerNumbers({red, green, blue}, "rg\n");
}

void beginFill() {}

void endFill() {
    answerNumbers({}, "f\n");
}

void moveTo(const Point* point) {
    answerPoints({point}, "m\n");
}

void lineTo(const Point* point) {
    answerPoints({point}, "l\n");
}

void curveTo(const Point* control1, const Point* control2, const Point* point) {
    answerPoints({control1, control2, point}, "c\n");
}

void tile(Art art) {
    HostDrawing::answer([&](Walk& walk) { objectWorks(walk, art); });
}

} // namespace

void blendedWorks(Walk& walk, Art path) {
    const DrawingProcedures procedures{
        setGray, setCMYK, beginFill, endFill,
        moveTo,  lineTo,  curveTo,   rules().writesRgb ? setRGB : nullptr};
    HostDrawing(walk).run([&] { callHost(slot::drawGradient, path, &procedures); });
}

void patternWorks(Walk& walk, Art path) {
    HostDrawing(walk).run([&] { callHost(slot::tilePattern, path, TileProcedure{tile}); });
}

} // namespace corvane
