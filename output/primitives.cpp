#include "output/primitives.h"

#include "filters/token/character.h"
#include "host/utilities.h"
#include "output/number_text.h"
#include "runtime/exception.h"
#include "runtime/fixed.h"
#include "runtime/rules.h"
#include "runtime/string.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace corvane {

namespace {

constexpr std::size_t scratchSize = 512;
constexpr std::int32_t widest = 255;

/// Characters that one byte of a name or a string becomes at most.
constexpr std::size_t longestEscape = 4;

/// Gathers characters and writes them piece by piece.
class Scratch {
public:
    explicit Scratch(Filter& stream) : stream_(stream) {}

    void add(char c) { text_[size_++] = c; }
    /// Makes room for one more escaped byte.
    void prepare() {
        if (size_ + longestEscape > text_.size()) {
            flush();
        }
    }
    void flush() {
        stringOutput(stream_, {text_.data(), size_});
        size_ = 0;
    }

private:
    Filter& stream_;
    std::array<char, scratchSize> text_;
    std::size_t size_ = 0;
};

bool needsEscape(char c) {
    return !isRegular(c) || c == '#' || c < '!' || c > '~';
}

char hexCharacter(unsigned value) {
    return "0123456789ABCDEF"[value & 15];
}

char octalCharacter(unsigned value) {
    return static_cast<char>('0' + (value & 7));
}

/// Backspace, line feed, form feed and carriage return.
bool isDropped(std::uint8_t byte) {
    return byte == 8 || byte == 10 || byte == 12 || byte == 13;
}

void prefixedOutput(Filter& stream, std::span<const std::uint8_t> text) {
    Scratch scratch(stream);
    for (const std::uint8_t byte : prefixedBytes(text)) {
        scratch.prepare();
        scratch.add(static_cast<char>(byte));
    }
    scratch.flush();
}

} // namespace

void stringOutput(Filter& stream, std::string_view text) {
    std::array<char, scratchSize> scratch;
    while (!text.empty()) {
        const std::string_view piece = text.substr(0, scratchSize);
        std::replace_copy(piece.begin(), piece.end(), scratch.begin(), '\r', '\n');
        writeFilter(stream, std::as_bytes(std::span(scratch).first(piece.size())));
        text.remove_prefix(piece.size());
    }
}

void integerOutput(Filter& stream, std::int32_t value) {
    std::array<char, std::numeric_limits<std::int32_t>::digits10 + 3> text; // sign, space
    char* end = std::to_chars(text.begin(), text.end(), value).ptr;
    *end++ = ' ';
    stringOutput(stream, {text.begin(), end});
}

void paddedOutput(Filter& stream, std::int32_t value, std::int32_t width) {
    if (value < 0 || width < 0 || width > widest) {
        failException(Exception::type);
    }
    std::array<char, widest> text;
    for (auto place = static_cast<std::size_t>(width); place-- > 0; value /= 10) {
        text[place] = static_cast<char>('0' + value % 10);
    }
    stringOutput(stream, {text.data(), static_cast<std::size_t>(width)});
}

void fixedOutput(Filter& stream, Fixed value) {
    std::array<char, numberRoom + 1> text;
    char* end = writeFixed(text.data(), value);
    *end++ = ' ';
    stringOutput(stream, {text.data(), end});
}

void realOutput(Filter& stream, double value) {
    if (!rules().shortestNumbers) {
        fixedOutput(stream, fixedFromReal(value));
        return;
    }
    std::array<char, realRoom + 1> text;
    char* end = writeReal(text.data(), value);
    *end++ = ' ';
    stringOutput(stream, {text.data(), end});
}

void pointOutput(Filter& stream, const Point& point) {
    fixedOutput(stream, point.x);
    fixedOutput(stream, point.y);
}

void rectOutput(Filter& stream, const Rect& rect) {
    for (const Fixed edge : {rect.left, rect.bottom, rect.right, rect.top}) {
        fixedOutput(stream, edge);
    }
}

void matrixOutput(Filter& stream, const Matrix& matrix) {
    for (const Fixed entry : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.tx, matrix.ty}) {
        fixedOutput(stream, entry);
    }
}

void matrixOutput(Filter& stream, const RealMatrix& matrix) {
    for (const double entry : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.tx, matrix.ty}) {
        realOutput(stream, entry);
    }
}

void referenceOutput(Filter& stream, std::int32_t number, std::int32_t generation) {
    integerOutput(stream, number);
    integerOutput(stream, generation & 0xFFFF);
    stringOutput(stream, "R\r");
}

void objectOutput(Filter& stream, std::int32_t number, std::int32_t generation) {
    integerOutput(stream, number);
    integerOutput(stream, generation & 0xFFFF);
    stringOutput(stream, "obj\r");
}

void nameOutput(Filter& stream, std::string_view name) {
    Scratch scratch(stream);
    scratch.add('/');
    for (const char c : name) {
        scratch.prepare();
        if (rules().escapedNames && needsEscape(c)) {
            const auto byte = static_cast<std::uint8_t>(c);
            scratch.add('#');
            scratch.add(hexCharacter(byte >> 4U));
            scratch.add(hexCharacter(byte));
        } else {
            scratch.add(c);
        }
    }
    scratch.prepare();
    scratch.add(' ');
    scratch.flush();
}

void bufferOutput(Filter& stream, std::span<const std::uint8_t> bytes) {
    Scratch scratch(stream);
    for (const std::uint8_t byte : bytes) {
        scratch.prepare();
        if (byte >= 32 && byte < 128) {
            if (byte == '(' || byte == ')' || byte == '\\') {
                scratch.add('\\');
            }
            scratch.add(static_cast<char>(byte));
        } else if (!isDropped(byte)) {
            scratch.add('\\');
            scratch.add(octalCharacter(byte >> 6U));
            scratch.add(octalCharacter(byte >> 3U));
            scratch.add(octalCharacter(byte));
        }
    }
    scratch.flush();
}

void colorOutput(Filter& stream, const Colour& colour) {
    switch (colour.kind) {
    case ColourKind::gray:
        fixedOutput(stream, detail::saturated(std::int64_t{fixedOne} - colour.component[0]));
        stringOutput(stream, " setgray\r");
        return;
    case ColourKind::process:
        for (const Fixed amount : colour.component) {
            fixedOutput(stream, amount);
        }
        stringOutput(stream, " setcmykcolor\r");
        return;
    default:
        failException(Exception::type);
    }
}

void dateOutput(Filter& stream) {
    std::int64_t now = 0;
    GetDateTime(&now);
    std::array<std::uint8_t, 256> text{};
    IUDateString(now, text.data());
    prefixedOutput(stream, text);
}

void timeOutput(Filter& stream) {
    std::int64_t now = 0;
    GetDateTime(&now);
    std::array<std::uint8_t, 256> text{};
    IUTimeString(now, text.data());
    prefixedOutput(stream, text);
}

} // namespace corvane
