// A content within the page's: a form, a glyph procedure, a tile, a mask.
#pragma once

#include "reader/content/interpreter.h"

#include <cstdint>

namespace corvane {

/// Runs in a state and in groups of its own; the interpreter is as it was when this is gone.
class InnerContent {
public:
    /// Whether it may be drawn now: not within itself, and not too deep. `object` is its number in
    /// the file; 0: it has none.
    static bool mayEnter(const Interpreter& interpreter, std::int32_t object);

    /// It begins with `state`, under the matrix to the artboard, and paints into `group`.
    InnerContent(Interpreter& interpreter, std::int32_t object, const GraphicsState& state,
                 const RealMatrix& matrix, Art group);
    ~InnerContent();
    InnerContent(const InnerContent&) = delete;
    InnerContent& operator=(const InnerContent&) = delete;

    /// Runs a stream with these resources, or with those in force where they are no dictionary.
    /// `prepare` is called with the interpreter when its level is there.
    template <class Prepare>
    void run(const Object& stream, const Object& resources, const Prepare& prepare,
             bool inheritsDefaults = true) {
        Scope scope(interpreter_, resources, inheritsDefaults);
        prepare(interpreter_);
        runStream(stream);
        scope.leave();
    }

private:
    class Scope : public ContentScope {
    public:
        Scope(Interpreter& interpreter, const Object& resources, bool inheritsDefaults);
    };

    void runStream(const Object& stream);

    Interpreter& interpreter_;
    GraphicsState formerState_;
    Containers formerContainers_;
    ContentProgress::Place place_;
};

} // namespace corvane
