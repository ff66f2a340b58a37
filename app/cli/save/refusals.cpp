#include "app/cli/save/refusals.h"

#include <algorithm>
#include <cstddef>

namespace corvane {

namespace {

/// The plug-in does not know where the artwork came from.
Fault explainedChange(const Arguments& arguments, const Provenance& source) {
    if (!source.identity) {
        return {code::pageChanged,
                "the artwork does not say which page it was opened from, and all that " +
                    (arguments.page == 0 ? "the page" : "page " + std::to_string(arguments.page)) +
                    " shows would go; to replace the page, say --force"};
    }
    const std::string origin = "page " + std::to_string(source.page) +
                               (source.sourceFile.empty() ? "" : " of " + source.sourceFile);
    return {code::pageChanged,
            "page " + std::to_string(arguments.page) +
                " is not the page that the artwork was opened from (" + origin +
                "), or was changed since; open it again, or replace it with --force"};
}

} // namespace

std::string annotationsText(const std::vector<std::string>& names) {
    constexpr std::size_t most = 8;
    const bool isOne = names.size() == 1;
    std::string text = isOne ? "an annotation is not in the artwork as the file has it ("
                             : std::to_string(names.size()) +
                                   " annotations are not in the artwork as the file has them (";
    for (std::size_t i = 0; i < std::min(names.size(), most); ++i) {
        text += (i == 0 ? "" : "; ") + names[i];
    }
    return text + (names.size() > most ? "; ...)" : ")");
}

Fault explainedRefusal(const Fault& fault, const Arguments& arguments, const Report& report) {
    if (fault.code == code::pageChanged) {
        return explainedChange(arguments, report.source);
    }
    if (fault.code == code::otherArtwork) {
        return {fault.code, "page " + std::to_string(arguments.page) +
                                " was saved from another artwork since this one was opened, and "
                                "saving this one would undo that; open the page again, or undo it "
                                "with --force"};
    }
    if (fault.code == code::artworkMissing && !report.missing.empty()) {
        return {fault.code, "saving would delete " + missingText(report.missing) +
                                ", which the artwork does not hold any more; if that is meant, say "
                                "--force"};
    }
    if (fault.code == code::annotationChanged && !report.annotationsKept.empty()) {
        return {fault.code, annotationsText(report.annotationsKept) +
                                ", and saving leaves the file's as they are; if that does not "
                                "matter, say --force"};
    }
    return fault;
}

} // namespace corvane
