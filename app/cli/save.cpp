#include "app/cli/commands.h"

#include "app/artwork/document.h"
#include "app/cli/artwork_file.h"
#include "app/cli/files/hidden_file.h"
#include "app/cli/files/save_place.h"
#include "app/cli/losses.h"
#include "app/cli/messages.h"
#include "app/cli/session.h"

#include <algorithm>

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

/// The plug-in does not know where the artwork came from.
Fault explainedChange(const Arguments& arguments, const Provenance& source) {
    if (!source.identity) {
        return {code::pageChanged,
                "the artwork does not say which page it was opened from, and all that page " +
                    std::to_string(arguments.page) +
                    " shows would go; to replace the page, say --force"};
    }
    const std::string origin = "page " + std::to_string(source.page) +
                               (source.sourceFile.empty() ? "" : " of " + source.sourceFile);
    return {code::pageChanged,
            "page " + std::to_string(arguments.page) +
                " is not the page that the artwork was opened from (" + origin +
                "), or was changed since; open it again, or replace it with --force"};
}

/// Which annotations the artwork has otherwise than the file, the first of many.
std::string annotationsText(const std::vector<std::string>& names) {
    constexpr std::size_t most = 8;
    std::string text = std::to_string(names.size()) +
                       (names.size() == 1 ? " annotation was" : " annotations were") +
                       " changed or deleted in the artwork (";
    for (std::size_t i = 0; i < std::min(names.size(), most); ++i) {
        text += (i == 0 ? "" : ", ") + names[i];
    }
    return text + (names.size() > most ? ", ...)" : ")");
}

/// `fault` as a person understands it who knows the artwork and the command line.
Fault explained(const Fault& fault, const Arguments& arguments, const Report& report) {
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
                                ", and saving leaves them in the file as they are; if that does "
                                "not matter, say --force"};
    }
    return fault;
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
           (count > most ? "..." : "") + (isOne ? " is in \"" : " are in \"") + font.name +
           "\", since the font \"" + font.wanted + "\" does not have " + (isOne ? "it" : "them") +
           " or is not installed";
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

void announceSaved(const SavePlace& place, const Arguments& arguments, const SavedFacts& saved) {
    const std::string would = arguments.dryRun ? " would be " : " is ";
    if (place.isNew()) {
        announce(arguments, place.name() + would + "a new file");
    }
    announce(arguments, savedText(place.name(), saved, arguments.dryRun));
    if (saved.isMended) {
        announce(arguments, mendedText(place.name(), saved, arguments.dryRun));
    }
    if (saved.isNothing && !saved.isMended && !arguments.output.empty()) {
        announce(arguments, place.name() + would + "an unchanged copy of " + arguments.file);
    }
    if (!arguments.dryRun && (saved.removed != 0 || saved.changed != 0)) {
        announce(arguments, place.name() + ": its old bytes stay in it, and what was changed or "
                                           "removed can still be read there: this is no redaction");
    }
}

} // namespace

void runSave(Arguments& arguments, Report& report) {
    Document document;
    document.page().setProfile(arguments.profile);
    const SvgReading reading = readArtwork(arguments.artwork, document, imagesOf(arguments));
    const std::int32_t wantedPage = arguments.page;
    report.source = reading.provenance;
    report.ignored = reading.ignored;
    adopt(reading, document, arguments);

    SavePlace place(arguments);
    const bool keeps = keepsPage(arguments, place, reading.provenance);
    weighLosses(arguments, document, reading.images, keeps, report);
    if (place.isNew()) {
        // Its one page is nobody's: whatever the artwork came from, there is nothing to undo.
        arguments.page = std::max(wantedPage, 1);
        arguments.force = true;
    }
    try {
        saveAt(place, document, arguments, report);
        // A copy was asked for, changed or not.
        const bool isMade =
            !report.saved->isNothing || report.saved->isMended || !arguments.output.empty();
        if (!arguments.dryRun && isMade) {
            place.commit();
            report.output = place.name();
        }
    } catch (const Failure& failure) {
        report.saved.reset();
        throw Failure(explained(failure.fault(), arguments, report));
    }
    if (keeps && !report.saved->isPatched && !report.saved->isNothing) {
        warnOfOmitted(report); // the page is another one by now, and was drawn anew by force
    }
    nameLayers(report, code::layersLeftOut, report.layersLeftOut);
    nameLayers(report, code::layersNotKept, report.layersNotKept);
    if (!report.annotationsKept.empty()) {
        report.warnings.push_back(
            {code::annotationKept,
             annotationsText(report.annotationsKept) + "; in the file they are as they were"});
    }
    nameFonts(report);
    weighPlaces(report);
    announceSaved(place, arguments, *report.saved);
}

} // namespace corvane
