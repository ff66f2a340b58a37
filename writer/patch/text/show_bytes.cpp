#include "writer/patch/text/show_bytes.h"

#include "runtime/exception.h"
#include "writer/patch/text/byte_tokens.h"

#include <algorithm>
#include <cstddef>

namespace corvane {

namespace {

bool isString(std::string_view token) {
    return token.front() == '(' || (token.front() == '<' && token != "<<");
}

/// What is one token and one element: others may be of several tokens. Readers pass over what
/// neither shows nor moves.
bool isElement(std::string_view token) {
    constexpr std::string_view starts = "/+-.0123456789";
    return isString(token) || starts.find(token.front()) != std::string_view::npos ||
           token == "null" || token == "true" || token == "false";
}

} // namespace

std::optional<ShowBytes> showBytes(std::string_view bytes) {
    std::vector<std::string_view> tokens = tokensOf(bytes);
    if (tokens.size() < 2) {
        return std::nullopt;
    }
    ShowBytes show{.word = tokens.back(), .before = {}, .elements = {}};
    tokens.pop_back();
    if (show.word == "TJ") {
        const auto open = std::ranges::find(tokens.rbegin(), tokens.rend(), "[");
        if (tokens.back() != "]" || open == tokens.rend()) {
            return std::nullopt;
        }
        show.elements.assign(open.base(), tokens.end() - 1);
        return std::ranges::all_of(show.elements, isElement) ? std::optional(show) : std::nullopt;
    }
    const std::size_t numbers = show.word == "\"" ? 2 : 0;
    if ((show.word != "Tj" && show.word != "'" && show.word != "\"") || !isString(tokens.back()) ||
        tokens.size() < 1 + numbers) {
        return std::nullopt;
    }
    show.elements.push_back(tokens.back());
    show.before.assign(tokens.end() - 1 - static_cast<std::ptrdiff_t>(numbers), tokens.end() - 1);
    return show;
}

const ShowBytes& ShownOperators::at(TraceIndex event, std::int32_t elements) {
    if (!show_ || event_ != event) {
        const TraceEvent& shown = trace_.events()[event];
        text_.clear();
        bytes_.append(text_, {shown.start, shown.end});
        show_ = showBytes(text_);
        event_ = event;
    }
    if (!show_ || static_cast<std::size_t>(elements) > show_->elements.size()) {
        failException(Exception::unpatchable);
    }
    return *show_;
}

} // namespace corvane
