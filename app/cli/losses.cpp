#include "app/cli/losses.h"

#include "app/artwork/path_walk.h"
#include "app/cli/artwork_file.h"
#include "app/cli/text.h"

#include <cstddef>
#include <string>

namespace corvane {

namespace {

constexpr const char* consequence = "; the saved page does not have that";

/// Strokes painted with a gradient or pattern, which pages get in gray in the original profile.
std::int32_t grayedStrokes(const Document& document) {
    std::int32_t count = 0;
    for (Layer layer = document.firstLayer(); layer != Layer::null;
         layer = document.nextLayer(layer)) {
        forEachPath(document, document.layerArt(layer), [&](Art path) {
            const PathStyle style = document.style(path);
            const bool grayed = style.stroke.kind == ColourKind::gradient ||
                                style.stroke.kind == ColourKind::pattern;
            count += style.strokePaint != 0 && grayed ? 1 : 0;
        });
    }
    return count;
}

} // namespace

void warnOfOmitted(Report& report) {
    for (const auto& [kind, count] : report.source.omitted) {
        report.warnings.push_back(
            {code::notInArtwork, omissionText(kind, count) + ": not in the artwork" + consequence});
    }
}

void weighLosses(const Arguments& arguments, const Document& document,
                 const std::vector<SvgImage>& images, bool keepsPage, Report& report) {
    std::vector<std::string> losses;
    const auto lose = [&](const std::string& loss) {
        losses.push_back(loss);
        report.warnings.push_back({code::notUnderstood, loss + consequence});
    };
    if (!keepsPage) {
        for (const auto& [kind, count] : report.source.omitted) {
            losses.push_back(omissionText(kind, count));
        }
        warnOfOmitted(report);
    }
    for (const auto& [kind, count] : report.ignored) {
        lose(kind + ": " + counted(count, "element") + " ignored" +
             (kind == "image" ? imageNames(images) : ""));
    }
    const bool grays = arguments.profile == Profile::original;
    if (const std::int32_t grayed = grays ? grayedStrokes(document) : 0; grayed != 0) {
        lose("gradients and patterns of strokes: " + counted(grayed, "element") + " drawn in gray");
    }
    if (!arguments.force && !losses.empty()) {
        report.warnings.clear();
        throw Failure({code::loss, "saving would lose what the artwork does not hold: " +
                                       joined(losses) + "; to save all the same, say --force"});
    }
}

} // namespace corvane
