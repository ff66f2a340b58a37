#include "fonts/free_type_outline.h"

#include FT_OUTLINE_H

namespace corvane {

namespace {

/// What the callbacks of one decomposition share.
class Decomposition {
public:
    explicit Decomposition(double scale) : scale_(scale) {}

    GlyphOutline take() {
        closeContour();
        return std::move(outline_);
    }

    void move(const FT_Vector& to) {
        closeContour();
        outline_.push_back({point(to), {}});
        here_ = point(to);
    }

    void line(const FT_Vector& to) { step({false, {}, {}, point(to)}); }

    void quadratic(const FT_Vector& control, const FT_Vector& to) {
        const auto towards = [middle = point(control)](OutlinePoint end) {
            return OutlinePoint{end.x + (middle.x - end.x) * 2 / 3,
                                end.y + (middle.y - end.y) * 2 / 3};
        };
        step({true, towards(here_), towards(point(to)), point(to)});
    }

    void cubic(const FT_Vector& first, const FT_Vector& second, const FT_Vector& to) {
        step({true, point(first), point(second), point(to)});
    }

private:
    OutlinePoint point(const FT_Vector& at) const {
        return {static_cast<double>(at.x) * scale_, static_cast<double>(at.y) * scale_};
    }

    void step(const OutlineStep& next) {
        outline_.back().steps.push_back(next);
        here_ = next.to;
    }

    /// FreeType draws the closing line; contours have it by themselves.
    void closeContour() {
        if (outline_.empty()) {
            return;
        }
        auto& [start, steps] = outline_.back();
        while (!steps.empty() && !steps.back().isCurve && steps.back().to == start) {
            steps.pop_back();
        }
        if (steps.empty()) {
            outline_.pop_back();
        }
    }

    double scale_;
    GlyphOutline outline_;
    OutlinePoint here_;
};

Decomposition& self(void* context) {
    return *static_cast<Decomposition*>(context);
}

} // namespace

GlyphOutline outlineOf(FT_Outline& outline, double scale) {
    FT_Outline_Funcs calls{};
    calls.move_to = [](const FT_Vector* to, void* context) {
        self(context).move(*to);
        return 0;
    };
    calls.line_to = [](const FT_Vector* to, void* context) {
        self(context).line(*to);
        return 0;
    };
    calls.conic_to = [](const FT_Vector* control, const FT_Vector* to, void* context) {
        self(context).quadratic(*control, *to);
        return 0;
    };
    calls.cubic_to = [](const FT_Vector* first, const FT_Vector* second, const FT_Vector* to,
                        void* context) {
        self(context).cubic(*first, *second, *to);
        return 0;
    };
    Decomposition decomposition(scale);
    // What comes before a fault counts.
    (void)FT_Outline_Decompose(&outline, &calls, &decomposition);
    return decomposition.take();
}

} // namespace corvane
