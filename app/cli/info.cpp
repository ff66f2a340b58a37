// The commands that only look at a file: `info` and `check`.
#include "app/cli/commands.h"

#include "app/artwork/document.h"
#include "app/cli/files/output.h"
#include "app/cli/session.h"

namespace corvane {

namespace {

void inspect(const Arguments& arguments, Report& report, Selector selector) {
    Document document;
    document.expectImport(); // of the page whose images are listed
    Session session(arguments, report, document);
    session.begin();
    session.call(selector);
}

} // namespace

void runInfo(const Arguments& arguments, Report& report) {
    inspect(arguments, report, Selector::info);
    if (!arguments.json) {
        printOutput(infoText(arguments.file, report), arguments.file);
    }
}

void runCheck(const Arguments& arguments, Report& report) {
    inspect(arguments, report, Selector::diagnose);
    if (!arguments.json) {
        printOutput(checkText(arguments.file, report), arguments.file);
    }
}

} // namespace corvane
