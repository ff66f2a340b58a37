// Any text as SVG: it is read within the budgets or refused with a sentence, and what was read is
// written as SVG that reads as the same again.
#include "fuzz/targets.h"

#include "app/svg/read/budget.h"
#include "app/svg/read/values/limited.h"
#include "app/svg/reader.h"
#include "app/svg/writer.h"

#include <new>
#include <optional>
#include <string>

namespace corvane::fuzz {

namespace {

/// Small enough for thousands of runs a second.
ReadingBudget tightBudget() {
    ReadingBudget budget;
    budget.nesting = 300;
    budget.expandedElements = 2000;
    budget.rulesTried = 200'000;
    budget.declarations = 2000;
    return budget;
}

/// The text as the writer would say it; none where it is refused.
std::optional<std::string> rewritten(std::string text, bool& whole) {
    Document document(memoryLimit);
    try {
        const SvgReading reading = readSvg(std::move(text), document, tightBudget());
        whole = reading.ignored.empty();
        StringSink sink;
        require(!writeSvg(document, reading.provenance, sink));
        return sink.text();
    } catch (const SvgError& error) {
        require(error.what()[0] != '\0');
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
    return std::nullopt;
}

} // namespace

void fuzzSvg(Bytes input) {
    std::string text;
    for (const std::byte byte : input) {
        text += static_cast<char>(byte);
    }
    bool whole = false;
    const auto first = rewritten(std::move(text), whole);
    if (!first) {
        return;
    }
    // The writer's own files are read without loss, and settle.
    const auto second = rewritten(*first, whole);
    if (second && whole) {
        const auto third = rewritten(*second, whole);
        require(!third || !whole || *third == *second);
    }
}

} // namespace corvane::fuzz
