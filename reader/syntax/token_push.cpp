#include "reader/syntax/token_push.h"

#include "runtime/budget.h"
#include "runtime/exception.h"

namespace corvane {

void TokenPusher::open(Mark kind) {
    if (depth_ == budget::objectNesting) {
        failException(Exception::structure);
    }
    pushMark(kind);
    ++depth_;
}

void TokenPusher::close(OperatorHandler construct) {
    construct(*cache_);
    --depth_;
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
        return close(blockOperator);
    case TokenType::arrayOpen:
        return open(Mark::array);
    case TokenType::arrayClose:
        return close(arrayOperator);
    case TokenType::procedureOpen:
        return open(Mark::procedure);
    case TokenType::procedureClose:
        return close(procedureOperator);
    case TokenType::dictionaryOpen:
        return open(Mark::dictionary);
    case TokenType::dictionaryClose:
        return close(dictionaryOperator);
    default:
        failException(Exception::type);
    }
}

} // namespace corvane
