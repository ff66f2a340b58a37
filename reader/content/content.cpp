#include "reader/content/content.h"

#include "objects/stack.h"
#include "reader/content/state.h"
#include "reader/paint/path.h"
#include "reader/syntax/keywords.h"
#include "reader/syntax/stream_chain.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/warning.h"

#include <algorithm>

namespace corvane {

namespace {

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
    ContentLoop(DocumentCache& cache, TokenFilter& tokens, TokenPusher& pusher,
                ContentProgress& progress)
        : cache_(cache), tokens_(tokens), pusher_(pusher), progress_(progress) {}

    /// Runs operators until the stream ends; what one raises is passed on.
    void run() {
        for (;;) {
            const TokenType type = tokens_.readToken();
            progress_.step(tokens_);
            if (type == TokenType::keyword) {
                runKeyword();
            } else if (type != TokenType::end) {
                pusher_.push(type, tokens_);
            } else {
                return;
            }
        }
    }

    void dropOperands() {
        clearStack();
        pusher_.reset();
    }

private:
    void runKeyword() {
        const Keyword* const keyword = contentKeywords().find(tokens_.bytes());
        if (keyword == nullptr) {
            raiseWarning(Warning::unknownOperator);
            dropOperands();
            return;
        }
        checkStack(keyword->operands);
        keyword->handler(cache_);
        // A word that stands for an operand leaves it; other operators leave nothing behind.
        if (!isConstant(*keyword)) {
            dropOperands();
        }
    }

    static bool isConstant(const Keyword& keyword) {
        return keyword.handler == nullOperator || keyword.handler == trueOperator ||
               keyword.handler == falseOperator;
    }

    DocumentCache& cache_;
    TokenFilter& tokens_;
    TokenPusher& pusher_;
    ContentProgress& progress_;
};

} // namespace

void ContentProgress::check(Filter& tokens) {
    if (tokenCount_ > budget::contentTokens) {
        failException(Exception::limit);
    }
    if (callHost(slot::checkUserAbort)) {
        failException(Exception::cancelled);
    }
    const HostExtension* const extension = hostExtension();
    if (extension != nullptr && extension->progress != nullptr) {
        const std::int64_t position = done_ + markFilter(tokens) - start_;
        extension->progress(extension->context, std::clamp<std::int64_t>(position, 0, total_),
                            total_);
    }
}

void ContentProgress::fault(Filter& tokens) {
    if (++faults_ > budget::operatorFaults) {
        failException(Exception::limit);
    }
    step(tokens);
}

void runContent(DocumentCache& cache, const Object& stream, TokenPusher& pusher,
                ContentProgress& progress) {
    ContentChain chain(cache, stream);
    progress.beginStream(integerObject(elementsObject(stream)[1]));
    ContentLoop loop(cache, chain.tokens(), pusher, progress);
    // The guarded block is opened once for many operators: again only after one failed.
    for (;;) {
        const Exception code = guarded([&] { loop.run(); });
        if (code == Exception::none) {
            return;
        }
        if (!isFileFault(code)) {
            againException();
        }
        resetException();
        raiseWarning(Warning::operatorFailed);
        loop.dropOperands();
        progress.fault(chain.tokens());
    }
}

void finishContent() {
    clearStack();
    dropPath();
    while (depthState() > 0) {
        restoreState();
    }
    containers.finish();
}

} // namespace corvane
