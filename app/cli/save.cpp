#include "app/cli/commands.h"

#include "app/artwork/document.h"
#include "app/artwork/path_walk.h"
#include "app/cli/artwork_file.h"
#include "app/cli/messages.h"
#include "app/cli/save_place.h"
#include "app/cli/session.h"
#include "app/cli/text.h"

#include <algorithm>

namespace corvane {

namespace {

/// What the person left open is as the artwork says.
void adopt(const SvgReading& reading, Document& document, Arguments& arguments) {
    if (!reading.ours) {
        document.page().setProfile(arguments.profile);
        return;
    }
    const Profile profile = document.page().profile();
    if (arguments.namesProfile && arguments.profile != profile) {
        throw Failure({code::artwork, "the artwork was opened in the profile " +
                                          std::string(profileName(profile)) +
                                          "; save it with that one"});
    }
    arguments.profile = profile;
    if (arguments.page == 0) {
        arguments.page = reading.provenance.page;
    }
}

/// Strokes painted with a gradient or pattern, which pages get in gray.
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

/// A warning for each kind of thing that the page will not have; refused where the person did not
/// say that it may be so.
void weighLosses(const Arguments& arguments, const Document& document,
                 const std::vector<SvgImage>& images, Report& report) {
    std::string losses;
    const auto lose = [&](std::int32_t code, const std::string& loss, const std::string& why) {
        losses += (losses.empty() ? "" : ", ") + loss;
        report.warnings.push_back({code, loss + why + "; the saved page does not have that"});
    };
    for (const auto& [kind, count] : report.source.omitted) {
        lose(code::notInArtwork, omissionText(kind, count), ": not kept when the page was opened");
    }
    for (const auto& [kind, count] : report.ignored) {
        lose(code::notUnderstood,
             kind + ": " + counted(count, "element") + " ignored" +
                 (kind == "image" ? imageNames(images) : ""),
             "");
    }
    if (const std::int32_t grayed = grayedStrokes(document); grayed != 0) {
        lose(code::notUnderstood,
             "gradients and patterns of strokes: " + counted(grayed, "element") + " drawn in gray",
             "");
    }
    if (!arguments.force && !losses.empty()) {
        report.warnings.clear();
        throw Failure({code::loss, "saving would lose what the artwork does not hold: " + losses +
                                       "; to save all the same, say --force"});
    }
}

/// The plug-in does not know where the artwork came from.
Fault explainedChange(const Arguments& arguments, const Provenance& source) {
    const std::string origin = "page " + std::to_string(source.page) +
                               (source.sourceFile.empty() ? "" : " of " + source.sourceFile);
    return {code::pageChanged,
            "page " + std::to_string(arguments.page) +
                " is not the page that the artwork was opened from (" + origin +
                "), or was changed since; open it again, or replace it with --force"};
}

/// Saves `document` at `place`; the page is settled then.
void saveAt(const SavePlace& place, Document& document, const Arguments& arguments,
            Report& report) {
    // To try takes a file as it is; one that is not there yet is made even so.
    const bool onlyReads = arguments.dryRun && !place.isNew();
    Session session(arguments, report, document,
                    {place.path(), onlyReads ? Action::read : Action::write});
    session.begin();
    session.call(Selector::prepare);
    session.call(arguments.dryRun ? Selector::trial : Selector::go);
    if (!report.saved) {
        throw Failure({code::host, "the plug-in did not say what it saved; install program and "
                                   "plug-in of one version"});
    }
}

/// The plug-in has one warning for all layers; their titles are told apart from it.
void nameLayers(Report& report) {
    constexpr std::size_t most = 8;
    std::string titles;
    for (std::size_t i = 0; i < std::min(report.layersLeftOut.size(), most); ++i) {
        titles += (i == 0 ? "" : ", ") + ("\"" + report.layersLeftOut[i] + "\"");
    }
    if (report.layersLeftOut.size() > most) {
        titles += ", ...";
    }
    const auto warning = std::ranges::find(report.warnings, code::layersLeftOut, &Fault::code);
    if (warning != report.warnings.end() && !titles.empty()) {
        warning->sentence += " (" + titles + ")";
    }
}

/// Pages that are one object cannot be told apart by what is appended.
void weighPlaces(Report& report) {
    if (report.saved->places > 1) {
        report.warnings.push_back(
            {code::pageRepeated, "the file has this page in " +
                                     std::to_string(report.saved->places) +
                                     " places; what is saved counts for all of them"});
    }
}

} // namespace

void runSave(Arguments& arguments, Report& report) {
    Document document;
    const SvgReading reading = readArtwork(arguments.artwork, document);
    const std::int32_t wantedPage = arguments.page;
    report.source = reading.provenance;
    report.ignored = reading.ignored;
    adopt(reading, document, arguments);
    weighLosses(arguments, document, reading.images, report);

    SavePlace place(arguments);
    if (place.isNew()) {
        // Its one page is nobody's: whatever the artwork came from, there is nothing to undo.
        arguments.page = std::max(wantedPage, 1);
        arguments.force = true;
    }
    try {
        saveAt(place, document, arguments, report);
        if (!arguments.dryRun) {
            place.commit();
            report.output = place.name();
        }
    } catch (const Failure& failure) {
        report.saved.reset();
        if (failure.fault().code == code::pageChanged) {
            throw Failure(explainedChange(arguments, reading.provenance));
        }
        throw;
    }
    nameLayers(report);
    if (place.isNew()) {
        announce(arguments,
                 place.name() + (arguments.dryRun ? " would be a new file" : " is a new file"));
    }
    weighPlaces(report);
    announce(arguments, savedText(place.name(), *report.saved, arguments.dryRun));
}

} // namespace corvane
