// `save --mend` without artwork.
#include "app/cli/commands/commands.h"

#include "app/artwork/document.h"
#include "app/cli/files/input_file.h"
#include "app/cli/files/save_place.h"
#include "app/cli/messages.h"
#include "app/cli/session.h"

namespace corvane {

void runMend(const Arguments& arguments, Report& report) {
    requireReadable(arguments.file);
    SavePlace place(arguments);
    Document document;
    Session session(arguments, report, document,
                    {place.path(), arguments.dryRun ? Action::read : Action::write});
    session.begin();
    session.call(Selector::mend);
    if (!report.saved) {
        throw Failure({code::host, "the plug-in did not say what it mended; install program and "
                                   "plug-in of one version"});
    }
    if (!arguments.dryRun && (report.saved->isMended || !arguments.output.empty())) {
        place.commit();
        report.output = place.name();
    }
    announce(arguments, mendedText(place.name(), *report.saved, arguments.dryRun));
}

} // namespace corvane
