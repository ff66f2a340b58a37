#include "fuzz/support/page_operations.h"

#include "filters/memory_filter.h"
#include "reader/image/inline_image.h"
#include "reader/page/page_content.h"
#include "reader/syntax/stream/stream_chain.h"

#include <memory>
#include <string_view>
#include <utility>

namespace corvane::fuzz {

namespace {

constexpr std::size_t mostContent = std::size_t{1} << 17;

std::string decoded(DocumentCache& cache, const Object& stream) {
    std::string bytes(mostContent, '\0');
    StreamChain chain(cache, stream);
    bytes.resize(readFilter(chain.top(), std::as_writable_bytes(std::span(bytes))));
    return bytes;
}

bool isOperand(std::string_view word) {
    return word == "true" || word == "false" || word == "null";
}

class OperationReader {
public:
    /// Operands go on from one stream to the next, tokens do not.
    void read(std::string_view content) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(std::as_bytes(std::span(content))));
        auto owner = setupToken();
        TokenFilter& tokens = *owner;
        chain.link(std::move(owner));
        for (TokenType type = tokens.readToken(); type != TokenType::end;
             type = tokens.readToken()) {
            const auto start = static_cast<std::size_t>(tokens.tokenStart());
            const auto end = static_cast<std::size_t>(tokens.tokenEnd());
            isInHex_ = type == TokenType::hexOpen || (isInHex_ && type == TokenType::text);
            addToken(content.substr(start, end - start), start,
                     type == TokenType::keyword && !isOperand(tokens.bytes()));
            if (type == TokenType::keyword && tokens.bytes() == "ID") {
                skipImageData(tokens, -1);
                const auto behind = static_cast<std::size_t>(tokens.tokenEnd());
                operations_.back().word += content.substr(end, behind - end);
            }
        }
        position_ += static_cast<std::int64_t>(content.size());
    }

    std::vector<PageOperation> take() {
        if (!next_.operands.empty()) {
            operations_.push_back(std::move(next_));
        }
        return std::move(operations_);
    }

private:
    void addToken(std::string_view raw, std::size_t start, bool isWord) {
        const std::int64_t place = position_ + static_cast<std::int64_t>(start);
        if (next_.operands.empty()) {
            next_.start = place;
        }
        next_.end = place + static_cast<std::int64_t>(raw.size());
        if (!isWord) {
            next_.operands.append(raw).append(isInHex_ ? "" : " ");
            return;
        }
        next_.word = raw;
        operations_.push_back(std::exchange(next_, {}));
    }

    std::int64_t position_ = 0; // of the stream
    bool isInHex_ = false;      // whose digits come in pieces that depend on where they stand
    PageOperation next_;
    std::vector<PageOperation> operations_;
};

} // namespace

std::optional<std::vector<PageOperation>> pageOperations(PluginHost& host) {
    OperationReader reader;
    bool isWhole = true;
    const bool isRead = host.look([&](DocumentCache& cache) {
        std::size_t total = 0;
        for (const ObjectOwner& stream : contentStreams(cache)) {
            const std::string content = decoded(cache, stream.get());
            total += content.size();
            isWhole = isWhole && total < mostContent;
            reader.read(content);
        }
    });
    return isRead && isWhole ? std::optional(reader.take()) : std::nullopt;
}

} // namespace corvane::fuzz
