// Whether a file carries a PDF header.
#include "entry/file_name.h"
#include "entry/selectors.h"
#include "filters/stream.h"
#include "reader/document/header_search.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "runtime/warning.h"

#include <array>
#include <string_view>

namespace corvane {

namespace {

/// Bytes at the front in which the header may begin.
constexpr std::size_t headerReach = 1000;

/// Looks at what follows each "%". As ever, a header needs a byte behind it.
std::uint32_t scanHeader(std::string_view front) {
    constexpr std::size_t shortestHeader = 7;
    while (true) {
        const std::size_t percent = front.find('%');
        if (percent == std::string_view::npos) {
            return resultNotFormat;
        }
        front.remove_prefix(percent + 1);
        if (front.size() < shortestHeader) {
            return resultNotFormat;
        }
        if (front.starts_with("PDF-1.") || (rules().modernHeader && front.starts_with("PDF-2."))) {
            return 0;
        }
        if (front.size() >= 9 && front.starts_with("VEX-0.2 ")) {
            raiseWarning(Warning::formerHeader);
            return 0;
        }
    }
}

} // namespace

std::uint32_t checkFormat(const ParameterBlock& block) {
    const FileSpecification& file = *block.file;
    std::uint32_t result = resultNotFormat;
    Chain chain;
    chain.link(setupStream(specifiedDirectory(file), specifiedName(file), "read"));
    guarded([&] {
        std::array<char, headerReach> buffer{};
        const std::size_t count =
            readFilter(*chain.top(), std::as_writable_bytes(std::span(buffer)));
        std::string_view front(buffer.data(), count);
        if (!rules().modernHeader) {
            // The classic scan takes the bytes as a string, which a zero byte ends.
            front = front.substr(0, front.find('\0'));
        }
        if (count >= 8) {
            result = scanHeader(front);
        }
        if (result == resultNotFormat && rules().searchesHeader && searchHeader(*chain.top())) {
            result = 0;
        }
    });
    chain.unlink();
    againException();
    return result;
}

} // namespace corvane
