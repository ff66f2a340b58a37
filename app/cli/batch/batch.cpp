#include "app/cli/batch/batch.h"

#include "app/cli/batch/batch_sum.h"
#include "app/cli/batch/tasks.h"
#include "app/cli/batch/worker.h"
#include "app/cli/fault.h"
#include "app/cli/files/output.h"
#include "app/cli/follow.h"
#include "app/cli/interrupt.h"
#include "app/cli/messages.h"

#include <cstddef>
#include <memory>
#include <poll.h>
#include <string>
#include <vector>

namespace corvane {

namespace {

constexpr int turn = 200; ///< milliseconds between two looks whether the person asked to stop

class Batch {
public:
    explicit Batch(const Arguments& arguments)
        : arguments_(arguments), tasks_(arguments), sum_(arguments) {}

    const BatchSum& sum() const { return sum_; }

    void run() {
        workers_.resize(static_cast<std::size_t>(arguments_.jobs));
        bool isCancelled = false;
        while (handOut() || isBusy()) {
            await();
            if (interrupted() && !isCancelled) {
                isCancelled = true;
                for (const auto& worker : workers_) {
                    if (worker) {
                        worker->cancel();
                    }
                }
            }
        }
    }

private:
    /// Gives a task to each worker that has none; whether there was one.
    bool handOut() {
        bool isAny = false;
        for (auto& worker : workers_) {
            while (!interrupted() && !(worker && worker->task())) {
                const auto task = tasks_.next();
                if (!task) {
                    return isAny;
                }
                isAny = true;
                if (const auto other = tasks_.claimed(*task)) {
                    fail(*task, {code::io, *other + " has the same name of output; tell them apart "
                                                    "with {folder} or {page} in -o"});
                    continue;
                }
                if (!worker) {
                    worker = std::make_unique<Worker>(arguments_);
                }
                worker->give(*task);
            }
        }
        return isAny;
    }

    bool isBusy() const {
        for (const auto& worker : workers_) {
            if (worker && worker->task()) {
                return true;
            }
        }
        return false;
    }

    /// Waits for a worker to have done, and takes what it has.
    void await() {
        std::vector<pollfd> polled;
        for (const auto& worker : workers_) {
            const bool isAtWork = worker && worker->task();
            polled.push_back({isAtWork ? worker->descriptor() : -1, POLLIN, 0});
        }
        poll(polled.data(), polled.size(), turn);
        for (std::size_t i = 0; i < polled.size(); ++i) {
            if (polled[i].revents != 0) {
                finish(workers_[i]);
            }
        }
        sum_.show();
    }

    void finish(std::unique_ptr<Worker>& worker) {
        const Task task = *worker->task();
        const TaskResult result = worker->take();
        sum_.clear();
        if (const std::string text = worker->output(); !text.empty()) {
            printOutput(text, "");
        }
        complain(worker->errors());
        if (worker->isGone()) {
            worker.reset();
            fail(task, {code::crashed,
                        "the process that worked on it ended" +
                            (result.signal != 0 ? " with signal " + std::to_string(result.signal)
                                                : std::string(" of itself")) +
                            "; other files are not concerned; please report it"});
        } else if (result.status == exitCancelled) {
            if (!interrupted()) { // somebody stopped that process alone, and it stays stopped
                worker.reset();
                sum_.add(false);
            }
        } else if (task.page == Task::countsPages && result.status == exitDone) {
            tasks_.addPages(task.file, result.pages);
        } else {
            sum_.add(result.status == exitDone);
        }
    }

    void fail(const Task& task, const Fault& fault) {
        Arguments arguments = arguments_;
        arguments.file = arguments_.files[task.file];
        arguments.files.clear();
        Report report;
        report.source.page = task.page > 0 ? task.page : 0;
        report.error = fault;
        sum_.clear();
        conclude(arguments, report);
        sum_.add(false);
    }

    const Arguments& arguments_;
    TaskList tasks_;
    BatchSum sum_;
    std::vector<std::unique_ptr<Worker>> workers_;
};

} // namespace

int runBatch(const Arguments& arguments) {
    Batch batch(arguments);
    std::optional<Fault> fault = faultOf([&] { batch.run(); });
    if (!fault && interrupted()) {
        fault = Fault{code::cancelled, "cancelled"};
    }
    const auto unsaid = faultOf([&] { batch.sum().sumUp(fault); });
    fault = fault ? fault : unsaid;
    if (fault) {
        complain(plainLine(fault->sentence));
        return exitStatus(fault);
    }
    return batch.sum().failed() == 0 ? exitDone : exitFailed;
}

} // namespace corvane
