#include "app/cli/program.h"

#include "app/cli/batch/batch.h"
#include "app/cli/fault.h"
#include "app/cli/files/output.h"
#include "app/cli/follow.h"
#include "app/cli/interrupt.h"
#include "app/cli/messages.h"
#include "app/cli/options/arguments.h"
#include "app/cli/options/help.h"
#include "app/cli/web_module.h"

#include <utility>

namespace corvane {

namespace {

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
    auto& arguments = std::get<Arguments>(wish);
    if (arguments.command == Command::serve) {
        return runServe(arguments);
    }
    return isBatch(arguments) ? runBatch(arguments) : follow(std::move(arguments));
}

} // namespace corvane
