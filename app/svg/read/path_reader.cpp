#include "app/svg/read/path_reader.h"

#include "app/svg/read/values/arc.h"
#include "app/svg/read/values/number.h"

namespace corvane {

namespace {

class PathReader {
public:
    PathReader(std::string_view data, ShapeBuilder& shape) : cursor_(data), shape_(shape) {}

    bool read();

private:
    bool draw(char command);
    bool drawMove();
    bool drawLine();
    bool drawHorizontal();
    bool drawVertical();
    bool drawCurve();
    bool drawSmoothCurve();
    bool drawQuadratic();
    bool drawSmoothQuadratic();
    bool drawArcs();

    bool number(double& value) {
        cursor_.skipSeparator();
        return cursor_.number(value);
    }
    /// A point, from the current one where the command is relative.
    bool point(RealPoint& to) {
        if (!number(to.x) || !number(to.y)) {
            return false;
        }
        if (relative_) {
            to.x += shape_.current().x;
            to.y += shape_.current().y;
        }
        return true;
    }
    bool flag(bool& value);
    /// The current point, or the last control point of the command before as seen from behind it.
    RealPoint mirrored(bool follows) const {
        const RealPoint at = shape_.current();
        return follows ? RealPoint{2 * at.x - control_.x, 2 * at.y - control_.y} : at;
    }

    TextCursor cursor_;
    ShapeBuilder& shape_;
    bool relative_ = false;
    bool stepped_ = false; ///< the command before was relative
    char previous_ = 0;    ///< the command before, in capitals
    RealPoint control_;    ///< the last control point of a curve
};

bool PathReader::flag(bool& value) {
    cursor_.skipSeparator();
    value = cursor_.peek() == '1';
    return cursor_.take('0') || cursor_.take('1');
}

bool PathReader::drawMove() {
    RealPoint to;
    if (!point(to)) {
        return false;
    }
    shape_.moveTo(to.x, to.y);
    return true;
}

bool PathReader::drawLine() {
    RealPoint to;
    if (!point(to)) {
        return false;
    }
    shape_.lineTo(to.x, to.y);
    return true;
}

bool PathReader::drawHorizontal() {
    double x = 0;
    if (!number(x)) {
        return false;
    }
    const RealPoint at = shape_.current();
    shape_.lineTo(relative_ ? at.x + x : x, at.y);
    return true;
}

bool PathReader::drawVertical() {
    double y = 0;
    if (!number(y)) {
        return false;
    }
    const RealPoint at = shape_.current();
    shape_.lineTo(at.x, relative_ ? at.y + y : y);
    return true;
}

bool PathReader::drawCurve() {
    RealPoint out;
    RealPoint to;
    RealPoint in;
    if (!point(out) || !point(in) || !point(to)) {
        return false;
    }
    control_ = in;
    shape_.curveTo(out, in, to);
    return true;
}

bool PathReader::drawSmoothCurve() {
    const RealPoint out = mirrored(previous_ == 'C' || previous_ == 'S');
    RealPoint in;
    RealPoint to;
    if (!point(in) || !point(to)) {
        return false;
    }
    control_ = in;
    shape_.curveTo(out, in, to);
    return true;
}

bool PathReader::drawQuadratic() {
    RealPoint control;
    RealPoint to;
    if (!point(control) || !point(to)) {
        return false;
    }
    control_ = control;
    shape_.quadraticTo(control, to);
    return true;
}

bool PathReader::drawSmoothQuadratic() {
    const RealPoint control = mirrored(previous_ == 'Q' || previous_ == 'T');
    RealPoint to;
    if (!point(to)) {
        return false;
    }
    control_ = control;
    shape_.quadraticTo(control, to);
    return true;
}

bool PathReader::drawArcs() {
    double radiusX = 0;
    double radiusY = 0;
    double turn = 0;
    bool large = false;
    bool sweep = false;
    RealPoint to;
    if (!number(radiusX) || !number(radiusY) || !number(turn) || !flag(large) || !flag(sweep) ||
        !point(to)) {
        return false;
    }
    drawArc(shape_, radiusX, radiusY, turn, large, sweep, to);
    return true;
}

bool PathReader::draw(char command) {
    switch (command) {
    case 'M':
        return drawMove();
    case 'L':
        return drawLine();
    case 'H':
        return drawHorizontal();
    case 'V':
        return drawVertical();
    case 'C':
        return drawCurve();
    case 'S':
        return drawSmoothCurve();
    case 'Q':
        return drawQuadratic();
    case 'T':
        return drawSmoothQuadratic();
    case 'A':
        return drawArcs();
    case 'Z':
        shape_.close(stepped_);
        return true;
    default:
        return false;
    }
}

bool PathReader::read() {
    char command = 0;
    for (cursor_.skipBlanks(); !cursor_.atEnd(); cursor_.skipSeparator()) {
        const char next = cursor_.peek();
        if (isLetter(next)) {
            cursor_.skip();
            stepped_ = relative_;
            relative_ = next >= 'a';
            command = relative_ ? static_cast<char>(next - 'a' + 'A') : next;
        } else if (command == 'M') {
            command = 'L'; // what numbers after those of a move mean
        } else if (command == 'Z') {
            return false;
        }
        if ((previous_ == 0 && command != 'M') || !draw(command)) {
            return false;
        }
        previous_ = command;
    }
    return true;
}

} // namespace

bool readPathData(std::string_view data, ShapeBuilder& shape) {
    TextCursor cursor(data);
    cursor.skipBlanks();
    if (cursor.rest() == "none") {
        return true;
    }
    return PathReader(data, shape).read();
}

bool readPoints(std::string_view points, bool closed, ShapeBuilder& shape) {
    TextCursor cursor(points);
    bool right = true;
    bool started = false;
    for (cursor.skipBlanks(); right && !cursor.atEnd(); cursor.skipSeparator()) {
        double x = 0;
        double y = 0;
        right = cursor.number(x);
        cursor.skipSeparator();
        right = right && cursor.number(y);
        if (right) {
            started ? shape.lineTo(x, y) : shape.moveTo(x, y);
            started = true;
        }
    }
    if (started && closed) {
        shape.close(false);
    }
    return right;
}

} // namespace corvane
