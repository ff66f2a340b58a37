#include "app/cli/commands.h"

#include "app/artwork/document.h"
#include "app/cli/messages.h"
#include "app/cli/output.h"
#include "app/cli/session.h"
#include "app/svg/writer.h"

#include <algorithm>

namespace corvane {

namespace {

std::string nameWithoutFolders(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

OutputTarget targetOf(const Arguments& arguments, std::int32_t page) {
    if (!arguments.output.empty()) {
        return outputTarget(arguments.output, arguments.file, true);
    }
    return outputTarget(outputName(arguments.file, page), arguments.file, false);
}

void writeArtwork(const Document& document, const OutputTarget& target, Report& report) {
    OutputFile output(target);
    output.commit(writeSvg(document, report.source, output));
    report.output = target.path;
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
    ImageFolder& images = session.listener().imageFolder();
    images.setPath(arguments.images.empty() ? imageFolderName(target.path) : arguments.images);
    document.page().setProfile(arguments.profile);
    document.expectImport();
    session.call(Selector::go);
    if (!document.importFinished()) {
        throw Failure({code::host, "the plug-in left the page unfinished; install program and "
                                   "plug-in of one version"});
    }
    writeArtwork(document, target, report);
    images.keep();
    if (target.kind != OutputTarget::Kind::standardOutput) {
        note(arguments, "page " + std::to_string(report.source.page) + " is in " + target.path);
    }
}

} // namespace corvane
