#include "app/cli/save/losses.h"

#include "app/artwork/geometry/path_walk.h"
#include "app/cli/artwork_file.h"
#include "app/cli/text.h"

#include <cstddef>
#include <string>
#include <vector>

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

/// Takes images out that the classic host has no EPSF file for; how many there were.
std::int32_t takeUnlinked(Document& document) {
    std::vector<Art> unlinked;
    for (Layer layer = document.firstLayer(); layer != Layer::null;
         layer = document.nextLayer(layer)) {
        const Art top = document.layerArt(layer);
        for (Art art = top; art != Art::null; art = following(document, art, top)) {
            if (document.kind(art) == ArtKind::placed && document.placedFile(art) == nullptr) {
                unlinked.push_back(art);
            }
        }
    }
    for (const Art art : unlinked) {
        document.dispose(art);
    }
    return static_cast<std::int32_t>(unlinked.size());
}

} // namespace

void warnOfOmitted(Report& report) {
    for (const auto& [kind, count] : report.source.omitted) {
        report.warnings.push_back(
            {code::notInArtwork, omissionText(kind, count) + ": not in the artwork" + consequence});
    }
}

void weighSplitLayers(const Arguments& arguments, const std::vector<SplitLayer>& layers,
                      Report& report) {
    std::vector<std::string> changes;
    for (const SplitLayer& layer : layers) {
        const std::string change = layer.isVisible ? "shown" : "hidden";
        changes.push_back("the layer \"" + layer.name + "\" was " + change + " in " +
                          std::to_string(layer.changed) + " of its " +
                          std::to_string(layer.groups) + " groups");
        report.warnings.push_back({code::layerIsOne, changes.back() + "; it is " + change +
                                                         " as a whole now, on every page"});
    }
    if (!arguments.force && !changes.empty()) {
        report.warnings.clear();
        throw Failure({code::loss, joined(changes) +
                                       ", and a layer of a PDF is shown or hidden as a whole, on "
                                       "every page; change its other groups, too, or say --force"});
    }
}

void weighLosses(const Arguments& arguments, Document& document,
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
    if (arguments.profile == Profile::original) {
        if (const std::int32_t count = takeUnlinked(document); count != 0) {
            lose(counted(count, "image") + " without the EPSF file that opening wrote, or changed "
                                           "since then");
        }
    }
    if (!arguments.force && !losses.empty()) {
        report.warnings.clear();
        throw Failure({code::loss, "saving would lose what the artwork does not hold: " +
                                       joined(losses) + "; to save all the same, say --force"});
    }
}

} // namespace corvane
