// Any bytes as a CMap: every string divides into codes, ranges are those that lookups find, and
// texts have bytes.
#include "fuzz/targets.h"
#include "host/memory.h"
#include "reader/font/characters.h"
#include "reader/font/cmap/read_cmap.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "toolbox/state.h"

namespace corvane::fuzz {

namespace {

void checkText(const CMap& map, std::uint32_t code) {
    const auto text = map.text(code);
    if (text && isText(*text)) {
        require(fromUtf8(toUtf8(*text)) == *text);
    }
}

void checkStrings(const CMap& map, Bytes string) {
    while (!string.empty()) {
        const StringCode code = map.firstCode(string);
        require(code.length >= 1 && code.length <= static_cast<std::int32_t>(longestCode));
        require(static_cast<std::size_t>(code.length) <= string.size());
        (void)map.cid(code);
        checkText(map, code.code);
        string = string.subspan(static_cast<std::size_t>(code.length));
    }
}

/// Ranges of a CMap that stands alone do not overlap any more.
void checkRanges(const CMap& map) {
    for (const CMap::CidRange& range : map.cidRanges()) {
        require(range.range.first <= range.range.last);
        for (const std::uint32_t code : {range.range.first, range.range.last}) {
            require(map.cid({code, range.length}) == range.range.at(code));
        }
    }
}

} // namespace

void fuzzCMap(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    selectRules(Profile::extended);
    const auto identity = CMap::identity(false);
    const auto read = [&](const CMapFinder& find) {
        std::shared_ptr<CMap> map;
        guarded([&] { map = readCMap(input, nullptr, find); });
        require(resetException() == Exception::none);
        return map;
    };
    const auto alone = read([](std::string_view) { return nullptr; });
    checkStrings(*alone, input);
    checkRanges(*alone);
    checkStrings(*read([&](std::string_view) { return identity; }), input);
}

} // namespace corvane::fuzz
