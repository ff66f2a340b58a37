#include "reader/syntax/token_push.h"

#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <algorithm>

namespace corvane {

namespace {

OperatorHandler constructOf(Mark kind) {
    switch (kind) {
    case Mark::hexadecimal:
        return blockOperator;
    case Mark::array:
        return arrayOperator;
    case Mark::procedure:
        return procedureOperator;
    default:
        return dictionaryOperator;
    }
}

} // namespace

TokenPusher TokenPusher::mending(DocumentCache& cache) {
    TokenPusher pusher(cache);
    pusher.mends_ = rules().mendsObjects;
    return pusher;
}

void TokenPusher::open(Mark kind) {
    if (depth_ == budget::objectNesting) {
        failException(Exception::structure);
    }
    pushMark(kind);
    ++depth_;
    if (mends_) {
        open_.push_back(kind);
    }
}

/// Closes the nearest construct of this kind. Where constructs are mended, those within it are
/// closed as well, and a bracket that closes nothing is passed over.
void TokenPusher::close(Mark kind) {
    if (mends_) {
        if (std::ranges::find(open_, kind) == open_.end()) {
            hasMended_ = true;
            return;
        }
        while (open_.back() != kind) {
            hasMended_ = true;
            closeInnermost();
        }
        return closeInnermost();
    }
    constructOf(kind)(*cache_);
    --depth_;
}

void TokenPusher::closeInnermost() {
    const Mark kind = open_.back();
    if (kind == Mark::dictionary) {
        mendPairs();
    }
    constructOf(kind)(*cache_);
    open_.pop_back();
    --depth_;
}

void TokenPusher::closeAll() {
    while (!open_.empty()) {
        hasMended_ = true;
        closeInnermost();
    }
}

bool TokenPusher::pushUnknownWord() {
    if (open_.empty()) {
        return false;
    }
    hasMended_ = true;
    nullOperator(*cache_);
    return true;
}

/// Leaves names with a value behind each above the mark of a dictionary: what stands in the place
/// of a name and is none goes, and so does a last name without a value.
void TokenPusher::mendPairs() {
    const std::int32_t count = countToMark(Mark::dictionary);
    bool isWhole = count % 2 == 0;
    for (std::int32_t i = 1; i < count && isWhole; i += 2) {
        isWhole = typeObject(indexStack(i)) == ObjectType::literal;
    }
    if (isWhole) {
        return;
    }
    hasMended_ = true;
    std::vector<ObjectOwner> objects(static_cast<std::size_t>(count));
    for (auto object = objects.rbegin(); object != objects.rend(); ++object) {
        *object = ObjectOwner(popStack());
    }
    for (std::size_t i = 0; i + 1 < objects.size(); ++i) {
        if (typeObject(objects[i].get()) == ObjectType::literal) {
            pushStack(objects[i].release());
            pushStack(objects[++i].release());
        }
    }
}

void TokenPusher::push(TokenType type, const TokenFilter& token) {
    switch (type) {
    case TokenType::integer:
        pushExactInteger(token.number().integer, token.number().exact);
        return;
    case TokenType::fixed:
        pushReal(token.number().fixed, token.number().exact);
        return;
    case TokenType::literal:
        pushLiteral(token.bytes());
        return;
    case TokenType::text:
        pushText(token.bytes());
        return;
    case TokenType::hexOpen:
        return open(Mark::hexadecimal);
    case TokenType::hexClose:
        return close(Mark::hexadecimal);
    case TokenType::arrayOpen:
        return open(Mark::array);
    case TokenType::arrayClose:
        return close(Mark::array);
    case TokenType::procedureOpen:
        return open(Mark::procedure);
    case TokenType::procedureClose:
        return close(Mark::procedure);
    case TokenType::dictionaryOpen:
        return open(Mark::dictionary);
    case TokenType::dictionaryClose:
        return close(Mark::dictionary);
    default:
        failException(Exception::type);
    }
}

} // namespace corvane
