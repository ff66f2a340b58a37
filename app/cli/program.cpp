#include "app/cli/program.h"

#include "app/cli/arguments.h"
#include "app/cli/commands.h"
#include "app/cli/fault.h"
#include "app/cli/files/output.h"
#include "app/cli/interrupt.h"
#include "app/cli/messages.h"
#include "app/cli/report/report.h"

#include <exception>
#include <new>
#include <utility>

namespace corvane {

namespace {

constexpr int exitDone = 0;
constexpr int exitFailed = 1;
constexpr int exitUsage = 2;
constexpr int exitCancelled = 130;

/// Runs `body`; what it raised, as a fault.
template <class Body>
std::optional<Fault> faultOf(Body&& body) {
    try {
        std::forward<Body>(body)();
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure.fault();
    } catch (const std::bad_alloc&) {
        return Fault{code::memory, "memory ran out; close other programs, or give more in "
                                   "CORVANE_ZONE_MB and CORVANE_ART_MB"};
    } catch (const std::exception& exception) {
        return Fault{code::host, exception.what()};
    }
}

int exitStatus(const std::optional<Fault>& error) {
    if (!error) {
        return exitDone;
    }
    return error->code == code::cancelled ? exitCancelled : exitFailed;
}

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
    }
}

int follow(Arguments arguments) {
    Report report;
    report.error = faultOf([&] {
        if (arguments.json && !outputIsStandard(arguments)) {
            outputTarget("-", arguments.file, true); // a fault is better found before the work
        }
        runCommand(arguments, report);
    });
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

int answer(Question question) {
    const std::string text =
        question == Question::help ? usageText() : "corvane " CORVANE_VERSION "\n";
    const auto fault = faultOf([&] { printOutput(text, ""); });
    if (fault) {
        complain(plainLine("error " + std::to_string(fault->code) + ": " + fault->sentence));
    }
    return exitStatus(fault);
}

} // namespace

int runProgram(std::span<const char* const> words) {
    const InterruptGuard guard;
    auto wish = parseArguments(words);
    if (const auto* const error = std::get_if<UsageError>(&wish)) {
        complain(plainLine(error->sentence + "; see corvane --help"));
        return exitUsage;
    }
    if (const auto* const question = std::get_if<Question>(&wish)) {
        return answer(*question);
    }
    return follow(std::get<Arguments>(std::move(wish)));
}

} // namespace corvane
