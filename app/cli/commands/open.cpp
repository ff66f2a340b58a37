#include "app/cli/commands/commands.h"

#include "app/artwork/document.h"
#include "app/cli/batch/name_pattern.h"
#include "app/cli/files/font_folder.h"
#include "app/cli/files/output.h"
#include "app/cli/image_place.h"
#include "app/cli/messages.h"
#include "app/cli/session.h"
#include "app/cli/terminal/progress.h"
#include "app/cli/text.h"
#include "app/svg/writer.h"

#include <algorithm>
#include <cstdio>
#include <optional>

namespace corvane {

namespace {

std::string nameWithoutFolders(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

OutputTarget namedTarget(const Arguments& arguments, std::int32_t page) {
    if (isPattern(arguments.output)) {
        return outputTarget(filledName(arguments.output, arguments.file, page), arguments.file,
                            true);
    }
    if (!arguments.output.empty()) {
        return outputTarget(arguments.output, arguments.file, true);
    }
    const std::string folder = arguments.folder.empty() ? "" : arguments.folder + "/";
    return outputTarget(folder + outputName(arguments.file, page), arguments.file, false);
}

OutputTarget targetOf(const Arguments& arguments, std::int32_t page) {
    OutputTarget target = namedTarget(arguments, page);
    target.isSynced = target.isThere;
    return target;
}

/// The classic profile draws pages anew, and holds no artwork against another.
void nameArtwork(const Arguments& arguments, const OutputTarget& target, Provenance& source) {
    if (arguments.profile == Profile::original || !source.identity) {
        return;
    }
    if (!arguments.folder.empty()) {
        // Nobody else has that folder: two people who edit one page do not undo each other's work.
        source.artwork = artworkName(source.identity->digest, target.path);
        return;
    }
    const bool hasName = target.kind != OutputTarget::Kind::standardOutput;
    source.artwork = artworkName(source.identity->digest,
                                 hasName ? nameWithoutFolders(target.path) : std::string());
}

/// Where saving makes patches, nothing that was left out is lost.
void noteOmitted(const Arguments& arguments, const Provenance& source) {
    std::vector<std::string> kinds;
    for (const auto& [kind, count] : source.omitted) {
        kinds.push_back(omissionText(kind, count));
    }
    if (arguments.profile == Profile::extended && !kinds.empty()) {
        note(arguments, "not in the artwork, and kept when it is saved: " + joined(kinds));
    }
}

/// Tells a terminal how much was written.
class ShownOutput final : public ByteSink {
public:
    ShownOutput(ByteSink& output, std::FILE* terminal)
        : output_(output), line_(terminal, "corvane: writing") {}

    std::error_code write(std::string_view bytes) override {
        written_ += static_cast<std::int64_t>(bytes.size());
        line_.count(written_, std::nullopt, "byte");
        return output_.write(bytes);
    }

private:
    ByteSink& output_;
    ProgressLine line_;
    std::int64_t written_ = 0;
};

void writeArtwork(const Arguments& arguments, const Document& document, const OutputTarget& target,
                  Report& report) {
    const bool embeds = arguments.fontPlace == PartPlace::artwork;
    OutputFile output(target);
    const bool isSeen = target.kind == OutputTarget::Kind::standardOutput;
    ShownOutput shown(output, isSeen ? nullptr : progressTerminal(arguments));
    output.commit(writeSvg(document, report.source, shown,
                           {embeds ? EmbeddedFonts::all : EmbeddedFonts::none,
                            arguments.placesLetters ? LetterPlacing::exact : LetterPlacing::flow}));
    report.output = target.path;
}

/// How many were written.
std::int32_t writeFonts(const Arguments& arguments, const Document& document) {
    return arguments.fontPlace == PartPlace::folder
               ? writeFontFiles(document.fonts(), arguments.fonts, arguments.file)
               : 0;
}

} // namespace

void runOpen(const Arguments& arguments, Report& report) {
    Document document;
    Session session(arguments, report, document);
    report.source.sourceFile = nameWithoutFolders(arguments.file);
    report.source.page = arguments.page;
    session.begin();
    session.call(Selector::prepare);
    // A file of one page asks nobody.
    report.source.page = std::max(report.source.page, 1);

    const OutputTarget target = targetOf(arguments, report.source.page);
    ImageFolder& folder = session.listener().imageFolder();
    if (arguments.imagePlace != PartPlace::none) {
        folder.setPath(arguments.images.empty() ? imageFolderName(target.path) : arguments.images);
    }
    ImagePlace images(arguments, folder, target.path);
    document.images().setStore(images.store());
    document.placedFiles().setViewer(images.viewer());
    document.page().setProfile(arguments.profile);
    document.expectImport();
    images.explain([&] { session.call(Selector::go); });
    if (!document.importFinished()) {
        throw Failure({code::host, "the plug-in left the page unfinished; install program and "
                                   "plug-in of one version"});
    }
    nameArtwork(arguments, target, report.source);
    const std::int32_t fonts = writeFonts(arguments, document);
    writeArtwork(arguments, document, target, report);
    images.keep(report);
    if (target.kind != OutputTarget::Kind::standardOutput) {
        note(arguments, "page " + std::to_string(report.source.page) + " is in " + target.path);
    }
    if (fonts != 0) {
        note(arguments, counted(fonts, "font") + " to install " + (fonts == 1 ? "is" : "are") +
                            " in " + arguments.fonts);
    }
    images.announce(arguments);
    noteOmitted(arguments, report.source);
}

} // namespace corvane
