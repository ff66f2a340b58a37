#include "app/cli/report/mend_kinds.h"
#include "app/cli/report/report.h"
#include "app/cli/text.h"

#include <array>

namespace corvane {

namespace {

struct KindRow {
    std::string_view name;
    const char* one;     ///< of the file, or of one object
    const char* several; ///< behind their number; null for what is said of the file
};

/// By `Mend`.
constexpr std::array<KindRow, mendKinds> kinds{{
    {"header", "a header that is missing or not at the front", nullptr},
    {"crossReference", "a damaged cross-reference", nullptr},
    {"trailer", "a trailer that does not lead to the catalog", nullptr},
    {"pages", "a page tree that does not lead to the pages", nullptr},
    {"pageNode", "1 wrong node of the page tree", "wrong nodes of the page tree"},
    {"streamLength", "1 stream of wrong length", "streams of wrong length"},
    {"objectEnd", "1 object without an end", "objects without an end"},
    {"syntax", "1 object with words that mean nothing", "objects with words that mean nothing"},
    {"lostObject", "1 object that is missing", "objects that are missing"},
    {"pageValue", "1 page with a box or rotation that is none",
     "pages with a box or rotation that is none"},
}};

} // namespace

std::string_view mendName(Mend kind) {
    return kinds[static_cast<std::size_t>(kind)].name;
}

std::string damageText(const MendCounts& counts) {
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        if (counts[i] > 1 && kinds[i].several != nullptr) {
            parts.push_back(grouped(counts[i]) + " " + kinds[i].several);
        } else if (counts[i] > 0) {
            parts.emplace_back(kinds[i].one);
        }
    }
    return joined(parts);
}

std::string mendedText(const std::string& file, const SavedFacts& saved, bool dryRun) {
    if (!saved.isMended) {
        return file + ": nothing to mend";
    }
    std::string text = file + (dryRun ? ": would be mended: " : ": mended: ");
    text += damageText(saved.mended);
    return saved.page.page == 0 ? text + "; " + appendedText(saved, dryRun) : text;
}

} // namespace corvane
