// The command `inkscape`: the extensions by which Inkscape opens pages and saves them.
#include "app/cli/commands/commands.h"
#include "app/cli/inkscape/extension_folder.h"
#include "app/cli/inkscape/installation.h"
#include "app/cli/messages.h"
#include "app/cli/text.h"

#include <filesystem>

namespace corvane {

namespace {

std::string installedText(const ExtensionFolder& folder) {
    return "the extensions are in " + folder.path + "; " +
           (folder.hasInkscape ? "start Inkscape again, and choose "
                               : "Inkscape is not installed here; once it is, choose ") +
           "Extensions > PDF Page > Open a Page of a PDF";
}

std::string removedText(const ExtensionFolder& folder, const Installation& installation) {
    if (installation.done().empty()) {
        return (installation.changed().empty() ? "nothing of ours is in "
                                               : "nothing was removed from ") +
               folder.path;
    }
    return (installation.changed().empty() ? "the extensions are gone from "
                                           : "the rest is gone from ") +
           folder.path;
}

std::string keptText(const std::vector<std::string>& names) {
    return joined(names) + (names.size() == 1
                                ? " was changed since it was installed, and stays"
                                : " were changed since they were installed, and stay");
}

} // namespace

void runInkscape(Arguments& arguments, Report& report) {
    const ExtensionFolder folder = extensionFolder();
    arguments.file = folder.path;
    std::error_code error;
    Installation installation(folder.path, std::filesystem::read_symlink("/proc/self/exe", error));
    if (arguments.extensions == ExtensionWish::install) {
        installation.install();
        report.installed = installation.done();
        announce(arguments, installedText(folder));
        return;
    }
    installation.remove();
    report.removed = installation.done();
    report.changed = installation.changed();
    announce(arguments, removedText(folder, installation));
    if (!report.changed.empty()) {
        report.warnings.push_back({code::extensionChanged, keptText(report.changed)});
    }
}

} // namespace corvane
