#include "app/svg/read/text/letter_places.h"

#include "app/svg/read/values/number.h"

#include <algorithm>
#include <utility>

namespace corvane {

std::vector<double> parseLengths(std::string_view text, Axis axis, const LengthContext& lengths) {
    std::vector<double> values;
    TextCursor cursor(text);
    for (cursor.skipBlanks(); !cursor.atEnd(); cursor.skipSeparator()) {
        const std::string_view before = cursor.rest();
        while (!cursor.atEnd() && !isBlank(cursor.peek()) && cursor.peek() != ',') {
            cursor.skip();
        }
        const auto length = parseLength(cursor.since(before), axis, lengths);
        if (!length) {
            break;
        }
        values.push_back(*length);
    }
    return values;
}

void LetterPlaces::open(const Attributes& attributes, const LengthContext& lengths,
                        std::size_t first) {
    constexpr std::array names{std::pair(Attribute::x, Axis::x), std::pair(Attribute::y, Axis::y),
                               std::pair(Attribute::dx, Axis::x), std::pair(Attribute::dy, Axis::y),
                               std::pair(Attribute::rotate, Axis::other)};
    static_assert(names.size() == kinds);
    Lists& lists = lists_.emplace_back();
    lists.first = first;
    for (std::size_t kind = 0; kind < kinds; ++kind) {
        Attribute name = names[kind].first;
        if (follows_ && kind == x && lists_.size() > 1) {
            continue;
        }
        if (follows_ && kind == dx && attributes.has(Attribute::dataDx)) {
            name = Attribute::dataDx;
        }
        if (attributes.has(name)) {
            lists.values[kind] = parseLengths(attributes[name], names[kind].second, lengths);
            lists.any = true;
        }
    }
}

const double* LetterPlaces::find(Kind kind, std::size_t letter) const {
    for (std::size_t depth = lists_.size(); depth-- > outermost_;) {
        const Lists& lists = lists_[depth];
        const std::vector<double>& values = lists.values[kind];
        if (!lists.any || values.empty()) {
            continue;
        }
        const std::size_t index = letter - lists.first;
        if (index < values.size()) {
            return &values[index];
        }
        if (kind == rotate) {
            return &values.back(); // goes on to the end of its element
        }
    }
    return nullptr;
}

LetterPlace LetterPlaces::of(std::size_t letter) const {
    LetterPlace place;
    const auto take = [&](Kind kind, auto& into) {
        if (const double* const value = find(kind, letter)) {
            into = *value;
        }
    };
    take(x, place.x);
    take(y, place.y);
    take(dx, place.dx);
    take(dy, place.dy);
    take(rotate, place.rotate);
    return place;
}

} // namespace corvane
