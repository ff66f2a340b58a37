#include "app/cli/batch/batch_sum.h"

#include "app/cli/files/output.h"
#include "app/cli/messages.h"
#include "app/cli/report/json.h"
#include "app/cli/text.h"

#include <algorithm>
#include <string>

namespace corvane {

namespace {

/// None where a list of pages goes to the end of each file.
std::optional<std::int64_t> totalOf(const Arguments& arguments) {
    std::int64_t pages = arguments.pages.empty() ? 1 : 0;
    for (const PageRange& range : arguments.pages) {
        if (range.last == 0) {
            return std::nullopt;
        }
        pages += std::int64_t{range.last} - range.first + 1;
    }
    return pages * static_cast<std::int64_t>(arguments.files.size());
}

} // namespace

BatchSum::BatchSum(const Arguments& arguments)
    : arguments_(arguments), line_(progressTerminal(arguments), "corvane:"),
      total_(totalOf(arguments)) {}

void BatchSum::show() {
    const std::int64_t count = done_ + failed_;
    line_.count(count, total_, arguments_.command == Command::open ? "page" : "file");
}

void BatchSum::sumUp(const std::optional<Fault>& fault) const {
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start_;
    const std::int64_t count = done_ + failed_;
    const auto files = static_cast<std::int64_t>(arguments_.files.size());
    if (arguments_.json) {
        JsonWriter json;
        json.openObject().name("command").text(commandName(arguments_.command));
        json.name("files").integer(files);
        json.name("done").integer(done_).name("failed").integer(failed_);
        json.name("seconds").real(spent.count()).name("error");
        if (fault) {
            json.openObject().name("code").integer(fault->code);
            json.name("sentence").text(fault->sentence).closeObject();
        } else {
            json.null();
        }
        printOutput(json.closeObject().result() + "\n", "");
        return;
    }
    const std::string what = arguments_.command == Command::open
                                 ? counted(count, "page") + " of " + counted(files, "file")
                                 : counted(count, "file");
    announce(arguments_, what + ": " + grouped(done_) + " done, " + grouped(failed_) + " failed; " +
                             decimal(spent.count()) + " s, " +
                             decimal(static_cast<double>(count) / std::max(spent.count(), 1e-6)) +
                             " a second");
}

} // namespace corvane
