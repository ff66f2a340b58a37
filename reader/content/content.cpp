#include "reader/content/content.h"

#include "objects/stack.h"
#include "reader/content/content_keywords.h"
#include "reader/content/content_trace.h"
#include "reader/content/interpreter.h"
#include "reader/syntax/stream/stream_chain.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <optional>

namespace corvane {

namespace {

/// Whether something else than text was painted: lines do not go on across that.
bool paintedOther(OperatorRole role, const EndedPath& ended) {
    const bool hasPath = ended.art != Art::null || ended.hidesFill || ended.hidesStroke;
    return role == OperatorRole::paint || role == OperatorRole::object ||
           role == OperatorRole::endImage || (role == OperatorRole::paintPath && hasPath);
}

/// What a glyph that only says its shape does not do.
bool setsColour(OperatorRole role) {
    return role == OperatorRole::fillSpace || role == OperatorRole::strokeSpace ||
           role == OperatorRole::fillColour || role == OperatorRole::strokeColour ||
           role == OperatorRole::intent;
}

/// The chain over one content stream, which is the cache's input while it is read.
class ContentChain {
public:
    ContentChain(DocumentCache& cache, const Object& stream)
        : cache_(cache), formerInput_(cache.input), chain_(cache, stream) {
        std::unique_ptr<TokenFilter> tokens = setupToken();
        tokens_ = tokens.get();
        chain_.link(std::move(tokens));
        cache.input = tokens_;
    }
    ~ContentChain() { cache_.input = formerInput_; }
    ContentChain(const ContentChain&) = delete;
    ContentChain& operator=(const ContentChain&) = delete;

    TokenFilter& tokens() { return *tokens_; }

private:
    DocumentCache& cache_;
    Filter* formerInput_;
    StreamChain chain_;
    TokenFilter* tokens_ = nullptr;
};

class ContentLoop {
public:
    ContentLoop(Interpreter& interpreter, TokenFilter& tokens)
        : interpreter_(interpreter), level_(interpreter.level), tokens_(tokens) {}

    /// Runs operators until the stream ends; what one raises is passed on.
    void run() {
        for (;;) {
            isReading_ = true;
            const TokenType type = tokens_.readToken();
            isReading_ = false;
            interpreter_.progress.step(tokens_);
            if (type == TokenType::end) {
                return;
            }
            if (!level_.isBegun) {
                level_.isBegun = true;
                level_.span.start = level_.streamStart + tokens_.tokenStart();
            }
            if (type == TokenType::keyword) {
                runKeyword();
            } else {
                level_.operands.push(type, tokens_);
            }
        }
    }

    /// Goes on behind what raised.
    void skipFault() {
        if (level_.trace != nullptr && isReading_) {
            level_.trace->noteDamage();
        } else if (level_.trace != nullptr) {
            level_.span.end = level_.streamStart + tokens_.tokenEnd();
            level_.trace->noteFailed(interpreter_);
        }
        dropOperands();
    }

private:
    void dropOperands() {
        clearStack();
        level_.operands.reset();
        level_.isBegun = false;
    }

    /// Some writers end paths that they did not begin, which harms nothing.
    bool endsNoPath() const {
        return level_.path.compound == Art::null && rules().continuesClosedPaths;
    }

    void passOver() {
        if (level_.trace != nullptr) {
            level_.trace->note(interpreter_, OperatorRole::other);
        }
        dropOperands();
    }

    void runKeyword() {
        level_.span.end = level_.streamStart + tokens_.tokenEnd();
        const ContentKeyword* const keyword = contentKeywords().find(tokens_.bytes());
        if (keyword == nullptr) {
            interpreter_.omissions.note(Omission::unknownOperator);
            return passOver();
        }
        if (keyword->role == OperatorRole::paintPath && endsNoPath()) {
            return passOver();
        }
        checkStack(keyword->operands);
        if (!level_.ignoresColour || !setsColour(keyword->role)) {
            keyword->handler(interpreter_);
        }
        if (paintedOther(keyword->role, level_.ended)) {
            level_.text.line.isOpen = false;
        }
        if (level_.trace != nullptr) {
            level_.trace->note(interpreter_, keyword->role);
        }
        if (keyword->role != OperatorRole::operand) {
            dropOperands();
        }
    }

    Interpreter& interpreter_;
    ContentLevel& level_;
    TokenFilter& tokens_;
    bool isReading_ = false; ///< what raises is a token, not an operator
};

std::int32_t startOf(const Object& stream) {
    return integerObject(elementsObject(stream)[1]);
}

std::int32_t endOf(const Object& stream) {
    return integerObject(elementsObject(stream)[2]);
}

/// Leaves out a stream whose filters are not known or cannot be set up; in the original profile the
/// page is then refused.
void leaveOut(Interpreter& interpreter) {
    if (!rules().mendsObjects) {
        againException();
    }
    resetException();
    interpreter.omissions.note(Omission::damagedOperator);
    if (ContentTrace* const trace = interpreter.level.trace) {
        trace->beginStream(interpreter.level.streamStart);
        trace->noteDamage();
        trace->endStream(interpreter.level.streamStart, false);
    }
}

void runStream(Interpreter& interpreter, const Object& stream) {
    std::optional<ContentChain> opened;
    const Exception fault = guarded([&] { opened.emplace(interpreter.cache, stream); });
    if (isFileFault(fault)) {
        return leaveOut(interpreter);
    }
    raiseException(fault);
    ContentChain& chain = *opened;
    interpreter.progress.beginStream(startOf(stream));
    if (interpreter.level.trace != nullptr) {
        interpreter.level.trace->beginStream(interpreter.level.streamStart);
    }
    ContentLoop loop(interpreter, chain.tokens());
    // The guarded block is opened once for many operators: again only after one failed.
    for (;;) {
        const Exception code = guarded([&] { loop.run(); });
        if (code == Exception::none) {
            break;
        }
        if (!isFileFault(code)) {
            againException();
        }
        resetException();
        interpreter.omissions.note(Omission::damagedOperator);
        loop.skipFault();
        interpreter.progress.fault(chain.tokens());
    }
    interpreter.progress.finishStream(std::int64_t{endOf(stream)} - startOf(stream));
    interpreter.level.streamStart += chain.tokens().tokenEnd();
    if (interpreter.level.trace != nullptr) {
        interpreter.level.trace->endStream(interpreter.level.streamStart,
                                           chain.tokens().endsInString());
    }
}

} // namespace

void runContent(Interpreter& interpreter, std::span<const ObjectOwner> streams) {
    for (const ObjectOwner& stream : streams) {
        runStream(interpreter, stream.get());
    }
}

} // namespace corvane
