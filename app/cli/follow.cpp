#include "app/cli/follow.h"

#include "app/cli/commands/commands.h"
#include "app/cli/files/output.h"
#include "app/cli/messages.h"

#include <string>
#include <utility>

namespace corvane {

namespace {

void runCommand(Arguments& arguments, Report& report) {
    switch (arguments.command) {
    case Command::open:
        return runOpen(arguments, report);
    case Command::save:
        return arguments.artwork.empty() ? runMend(arguments, report) : runSave(arguments, report);
    case Command::info:
        return runInfo(arguments, report);
    case Command::check:
        return runCheck(arguments, report);
    case Command::log:
        return runLog(arguments, report);
    case Command::revert:
        return runRevert(arguments, report);
    case Command::edit:
        return runEdit(arguments, report);
    case Command::inkscape:
        return runInkscape(arguments, report);
    case Command::serve:
        break; // not a command on one file
    }
}

} // namespace

int exitStatus(const std::optional<Fault>& error) {
    if (!error) {
        return exitDone;
    }
    return error->code == code::cancelled ? exitCancelled : exitFailed;
}

int follow(Arguments arguments) {
    Report report;
    report.error = faultOf([&] {
        if (arguments.json && !outputIsStandard(arguments)) {
            outputTarget("-", arguments.file, true); // a fault is better found before the work
        }
        runCommand(arguments, report);
    });
    return conclude(arguments, report);
}

int conclude(const Arguments& arguments, const Report& report) {
    tell(arguments, report);
    if (arguments.json) {
        const std::string facts = reportJson(arguments, report);
        if (outputIsStandard(arguments)) {
            complain(facts);
        } else if (const auto fault = faultOf([&] { printOutput(facts, arguments.file); })) {
            complain(errorLine(arguments.file, *fault));
            return exitStatus(report.error ? report.error : fault);
        }
    }
    return exitStatus(report.error);
}

} // namespace corvane
