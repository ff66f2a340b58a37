#include "app/cli/terminal/chooser.h"

#include "app/cli/text.h"

#include <charconv>
#include <cmath>

namespace corvane {

std::optional<std::int32_t> choosePage(LineSource& answers, std::ostream& prompt,
                                       std::string_view what, std::int32_t first, std::int32_t last,
                                       std::int32_t proposal) {
    while (true) {
        prompt << what << ", " << first << " to " << last << " (Enter: " << proposal
               << ", q: cancel): " << std::flush;
        const auto line = answers.next();
        if (!line) {
            prompt << std::endl;
            return std::nullopt;
        }
        const std::string_view answer = trimmedLine(*line);
        if (answer.empty()) {
            return proposal;
        }
        if (answer == "q" || answer == "Q") {
            return std::nullopt;
        }
        std::int32_t page = 0;
        const char* const end = answer.data() + answer.size();
        const auto read = std::from_chars(answer.data(), end, page);
        if (read.ec == std::errc() && read.ptr == end && page >= first && page <= last) {
            return page;
        }
    }
}

std::string pageList(std::int32_t first, std::int32_t last, PageProxies& proxies) {
    constexpr std::int32_t most = 40; // a screenful
    std::string text;
    for (std::int32_t number = first; number <= last && number - first < most; ++number) {
        const PageProxy proxy = proxies.page(number);
        text += "  page " + std::to_string(number);
        if (proxy.width > 0) {
            text += ", " + std::to_string(std::lround(proxy.width)) + " x " +
                    std::to_string(std::lround(proxy.height)) + " points";
        }
        if (!proxy.title.empty()) {
            text += ", " + terminalText(proxy.title);
        }
        text += '\n';
    }
    if (last - first >= most) {
        text += "  ...\n";
    }
    return text;
}

} // namespace corvane
