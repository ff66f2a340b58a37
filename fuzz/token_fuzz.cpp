// Any bytes through the token filter: the same tokens at the same places whatever the chunks below
// it, and mark, seek and read that stay exact between tokens.
#include "filters/buffer.h"
#include "filters/memory_filter.h"
#include "filters/token/token.h"
#include "fuzz/targets.h"
#include "host/memory.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "toolbox/state.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <vector>

namespace corvane::fuzz {

namespace {

/// A step that was no token: raw bytes read, or one of the filter's own operations.
constexpr auto aside = static_cast<TokenType>(-1);

/// A token, with all pieces of a hexadecimal string in one, and the place behind it.
struct Step {
    TokenType type = aside;
    std::int32_t mark = 0;
    double number = 0;
    std::string bytes{};
    friend bool operator==(const Step&, const Step&) = default;
};

Step readStep(TokenFilter& token) {
    Step step{.type = token.readToken()};
    switch (step.type) {
    case TokenType::integer:
    case TokenType::fixed:
        step.number = token.number().exact;
        break;
    case TokenType::keyword:
    case TokenType::literal:
    case TokenType::text:
        step.bytes = token.bytes();
        break;
    case TokenType::hexOpen:
        while (token.readToken() == TokenType::text) {
            step.bytes += token.bytes();
        }
        break;
    default:
        break;
    }
    step.mark = token.mark();
    return step;
}

/// Reads raw bytes, as an image's data is read; they must be those of the input.
void readRaw(TokenFilter& token, Bytes input, std::size_t count) {
    std::array<std::byte, 256> buffer{};
    const Bytes expected = input.subspan(static_cast<std::size_t>(token.mark()));
    const std::size_t read = readFilter(token, std::span(buffer).first(count));
    require(read == std::min(count, expected.size()));
    require(std::ranges::equal(expected.first(read), std::span(buffer).first(read)));
}

/// Goes back to a place between two tokens, from where the same token must follow.
void rereadStep(TokenFilter& token, const Step& from, const Step& to) {
    const std::int32_t here = token.mark();
    require(token.seek(from.mark) == from.mark && token.mark() == from.mark);
    if (to.type != aside) {
        require(readStep(token) == to);
    }
    require(token.seek(here) == here && token.mark() == here);
}

/// What a reader does between two tokens now and then; true where the place has changed.
bool stepAside(TokenFilter& token, Bytes input, const std::vector<Step>& steps, Choices& choices) {
    switch (choices.below(20)) {
    case 0:
        readRaw(token, input, choices.below(256));
        return true;
    case 1:
        callFilter(token, Operation::streamData);
        return true;
    case 2:
        callFilter(token, Operation::skipSpace);
        return true;
    case 3: {
        const std::size_t first = choices.below(static_cast<std::uint32_t>(steps.size() - 1));
        rereadStep(token, steps[first], steps[first + 1]);
        return false;
    }
    default:
        return false;
    }
}

/// All tokens of the input, read through `token` on top of a chain.
void readAll(TokenFilter& token, Bytes input, std::vector<Step>& steps) {
    Choices choices(input);
    steps.emplace_back();
    do {
        const std::int32_t before = steps.back().mark;
        steps.push_back(readStep(token));
        // Every token takes bytes, so that nothing is endless.
        require(steps.back().mark > before || steps.back().type == TokenType::end);
        if (stepAside(token, input, steps, choices)) {
            steps.push_back({.type = aside, .mark = token.mark()});
        }
        require(static_cast<std::size_t>(steps.back().mark) <= input.size());
    } while (steps.back().type != TokenType::end);
    require(static_cast<std::size_t>(steps.back().mark) == input.size());
}

struct Reading {
    Exception code = Exception::none;
    std::vector<Step> steps;
    friend bool operator==(const Reading&, const Reading&) = default;
};

/// `bufferSize` 0: no buffer below the token filter.
Reading readThrough(Bytes input, std::int32_t bufferSize) {
    Reading reading;
    reading.code = guarded([&] {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(input));
        if (bufferSize > 0) {
            chain.link(setupBuffer(bufferSize));
        }
        auto owner = setupToken();
        TokenFilter& token = *owner;
        chain.link(std::move(owner));
        readAll(token, input, reading.steps);
        chain.unlink();
    });
    resetException();
    require(zoneBlocksInUse() == 0 && zoneBytesCharged() == 0);
    return reading;
}

} // namespace

void fuzzToken(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    Choices choices(input);
    selectRules(choices.below(2) == 0 ? Profile::original : Profile::extended);
    const Reading whole = readThrough(input, 0);
    require(readThrough(input, usualBufferSize) == whole);
    require(readThrough(input, static_cast<std::int32_t>(1 + choices.below(64))) == whole);
}

} // namespace corvane::fuzz
