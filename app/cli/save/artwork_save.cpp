#include "app/cli/save/artwork_save.h"

#include "app/cli/artwork_file.h"
#include "app/cli/fault.h"
#include "app/cli/files/hidden_file.h"
#include "app/cli/save/losses.h"
#include "app/cli/save/refusals.h"
#include "app/cli/session.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace corvane {

namespace {

/// Images lie beside the artwork, or where the person says.
ImageFolders imagesOf(const Arguments& arguments) {
    std::vector<std::string> others;
    if (!arguments.images.empty()) {
        others.push_back(arguments.images);
    }
    const bool isStream = arguments.artwork == "-";
    return {isStream ? "." : folderOf(arguments.artwork), others, arguments.allowsFiles};
}

/// What the person left open is as the artwork says.
void adopt(const SvgReading& reading, const Document& document, Arguments& arguments) {
    if (!reading.ours) {
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

/// Whether the plug-in patches the page that the artwork was opened from, where all stays that
/// opening left out.
bool keepsPage(const Arguments& arguments, const SavePlace& place, const Provenance& source) {
    return arguments.profile == Profile::extended && !place.isNew() && source.identity;
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
void nameLayers(Report& report, std::int32_t code, const std::vector<std::string>& layers) {
    constexpr std::size_t most = 8;
    std::string titles;
    for (std::size_t i = 0; i < std::min(layers.size(), most); ++i) {
        titles += (i == 0 ? "" : ", ") + ("\"" + layers[i] + "\"");
    }
    if (layers.size() > most) {
        titles += ", ...";
    }
    const auto warning = std::ranges::find(report.warnings, code, &Fault::code);
    if (warning != report.warnings.end() && !titles.empty()) {
        warning->sentence += " (" + titles + ")";
    }
}

/// Why letters are not in the font that they should be in.
std::string reasonOf(const FontNote& font, bool isOne) {
    const std::string them = isOne ? "it" : "them";
    return font.name.starts_with(font.wanted)
               ? " of this machine, since the page's part of that font does not have " + them
               : ", since the font \"" + font.wanted + "\" does not have " + them +
                     " or is not installed";
}

/// Which letters are in a font that took the place of another, the first of many.
std::string fontText(const FontNote& font) {
    constexpr std::size_t most = 20;
    const std::string& letters = font.letters;
    std::size_t count = 0;
    std::size_t shown = letters.size();
    for (std::size_t i = 0; i < letters.size(); ++i) {
        const bool isStart = (static_cast<unsigned char>(letters[i]) & 0xC0U) != 0x80U;
        shown = isStart && count == most ? i : shown;
        count += isStart ? 1 : 0;
    }
    const bool isOne = count == 1;
    return (isOne ? "the letter " : "the letters ") + letters.substr(0, shown) +
           (count > most ? "..." : "") + (isOne ? " is in \"" : " are in \"") + font.name + "\"" +
           reasonOf(font, isOne);
}

/// The plug-in has one warning for all fonts that took the place of others; each gets one here.
void nameFonts(Report& report) {
    std::vector<Fault> named;
    for (const FontNote& font : report.fontsAdded) {
        if (!font.wanted.empty()) {
            named.push_back({code::fontAdded, fontText(font)});
        }
    }
    const auto warning = std::ranges::find(report.warnings, code::fontAdded, &Fault::code);
    if (warning != report.warnings.end() && !named.empty()) {
        report.warnings.insert(report.warnings.erase(warning), named.begin(), named.end());
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

ArtworkSave::ArtworkSave(Arguments& arguments, Report& report, const OpenedPage* opened)
    : arguments_(arguments), report_(report) {
    document_.page().setProfile(arguments.profile);
    ProgressLine line(progressTerminal(arguments), "corvane: reading the artwork");
    reading_ = readArtwork(arguments.artwork, document_, imagesOf(arguments), line, opened);
    line.clear();
    wantedPage_ = arguments.page;
    report.source = reading_.provenance;
    report.ignored = reading_.ignored;
    adopt(reading_, document_, arguments);
}

void ArtworkSave::run(SavePlace& place) {
    const bool keeps = keepsPage(arguments_, place, reading_.provenance);
    weighLosses(arguments_, document_, reading_.images, keeps, report_);
    if (!place.isNew()) {
        weighSplitLayers(arguments_, reading_.splitLayers, report_);
    } else {
        // Its one page is nobody's: whatever the artwork came from, there is nothing to undo.
        arguments_.page = std::max(wantedPage_, 1);
        arguments_.force = true;
    }
    try {
        saveAt(place, document_, arguments_, report_);
        // A copy was asked for, changed or not.
        const bool isMade =
            !report_.saved->isNothing || report_.saved->isMended || !arguments_.output.empty();
        if (!arguments_.dryRun && isMade) {
            place.commit();
            report_.output = place.name();
        }
    } catch (const Failure& failure) {
        report_.saved.reset();
        throw Failure(explainedRefusal(failure.fault(), arguments_, report_));
    }
    if (keeps && !report_.saved->isPatched && !report_.saved->isNothing) {
        warnOfOmitted(report_); // the page is another one by now, and was drawn anew by force
    }
    nameLayers(report_, code::layersLeftOut, report_.layersLeftOut);
    nameLayers(report_, code::layersNotKept, report_.layersNotKept);
    if (!report_.annotationsKept.empty()) {
        report_.warnings.push_back({code::annotationKept, annotationsText(report_.annotationsKept) +
                                                              "; the file's stay as they were"});
    }
    nameFonts(report_);
    weighPlaces(report_);
}

} // namespace corvane
