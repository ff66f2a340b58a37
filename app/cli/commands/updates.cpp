// The commands about what was appended to a file: `log` and `revert`.
#include "app/cli/commands/commands.h"

#include "app/artwork/document.h"
#include "app/cli/files/file_lock.h"
#include "app/cli/files/input_file.h"
#include "app/cli/files/output.h"
#include "app/cli/messages.h"
#include "app/cli/session.h"

namespace corvane {

void runLog(const Arguments& arguments, Report& report) {
    Document document;
    Session session(arguments, report, document);
    session.begin();
    session.call(Selector::log);
    if (!arguments.json) {
        printOutput(logText(arguments.file, report), arguments.file);
    }
}

void runRevert(const Arguments& arguments, Report& report) {
    const FileLock lock(requireWritable(arguments.file));
    requireExpected(arguments);
    Document document;
    Session session(arguments, report, document, {arguments.file, Action::write});
    session.begin();
    session.call(Selector::revert);
    if (report.updates.empty()) {
        throw Failure({code::host, "the plug-in did not say what it took off; install program and "
                                   "plug-in of one version"});
    }
    announce(arguments, revertedText(arguments.file, report.updates.back()));
}

} // namespace corvane
