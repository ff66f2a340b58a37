#include "fonts/mended_program.h"
#include "runtime/budget.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace corvane {

namespace {

constexpr std::string_view type1Mark = "%!PS-AdobeFont";
constexpr std::string_view type1Line = "%!PS-AdobeFont-1.0\n";

std::string_view textOf(std::span<const std::byte> bytes) {
    return {static_cast<const char*>(static_cast<const void*>(bytes.data())), bytes.size()};
}

/// First bytes of TrueType, OpenType, collections, CFF and Type 1 in segments.
bool hasOtherFormat(std::string_view text) {
    using namespace std::string_view_literals;
    constexpr std::string_view marks[] = {"\0\1\0\0"sv, "true"sv, "typ1"sv,    "OTTO"sv,
                                          "ttcf"sv,     "\1\0"sv, "\x80\x01"sv};
    return std::ranges::any_of(marks,
                               [&](std::string_view mark) { return text.starts_with(mark); });
}

} // namespace

std::vector<std::byte> mendedProgram(std::vector<std::byte> file) {
    const std::string_view text = textOf(file);
    if (hasOtherFormat(text) || text.starts_with(type1Mark) || text.starts_with("%!FontType")) {
        return file;
    }
    const std::string_view lead = text.substr(0, budget::fontProgramLead);
    std::size_t from = lead.find(type1Mark);
    if (from != lead.npos) {
        file.erase(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(from));
        return file;
    }
    if (text.find("/CharStrings") == text.npos && text.find("eexec") == text.npos) {
        return file;
    }
    from = lead.find("%!");
    if (from == lead.npos) {
        from = 0;
    }
    std::vector<std::byte> mended;
    mended.reserve(type1Line.size() + file.size() - from);
    std::ranges::transform(type1Line, std::back_inserter(mended),
                           [](char c) { return std::byte(c); });
    mended.insert(mended.end(), file.begin() + static_cast<std::ptrdiff_t>(from), file.end());
    return mended;
}

} // namespace corvane
