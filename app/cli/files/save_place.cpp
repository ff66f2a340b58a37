#include "app/cli/files/save_place.h"

#include "app/cli/fault.h"
#include "app/cli/files/input_file.h"
#include "toolbox/descriptor.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace corvane {

namespace {

/// Appends all bytes of the file `from` to `output`.
std::error_code copyBytes(const std::string& from, OutputFile& output) {
    const Descriptor source(open(from.c_str(), O_RDONLY | O_CLOEXEC));
    if (!source) {
        return lastError();
    }
    std::array<char, 65536> block{};
    while (true) {
        const ssize_t count = read(source.number(), block.data(), block.size());
        if (count == 0) {
            return {};
        }
        if (count < 0 && errno != EINTR) {
            return lastError();
        }
        if (count > 0) {
            const auto length = static_cast<std::size_t>(count);
            if (const std::error_code error = output.write({block.data(), length})) {
                return error;
            }
        }
    }
}

OutputTarget targetOfCopy(const Arguments& arguments) {
    outputTarget(arguments.output, arguments.artwork, true); // the artwork is not replaced either
    OutputTarget target = outputTarget(arguments.output, arguments.file, true);
    if (target.kind != OutputTarget::Kind::file) {
        throw Failure({code::io, arguments.output + " is no regular file; name another place with "
                                                    "--output"});
    }
    return target;
}

/// A name that need not be free, and where nothing is put in the end.
OutputTarget targetOfTrial() {
    OutputTarget target;
    target.path = (std::filesystem::temp_directory_path() / "trial.pdf").string();
    target.place = target.path;
    return target;
}

} // namespace

SavePlace::SavePlace(const Arguments& arguments) : name_(arguments.file), path_(arguments.file) {
    const bool exists = isThere(arguments.file);
    if (!arguments.output.empty()) {
        if (!exists) {
            refuseFile("there is none to copy");
        }
        requireReadable(arguments.file);
        name_ = arguments.output;
        const OutputTarget target = targetOfCopy(arguments);
        if (arguments.dryRun) {
            requireExpected(arguments);
        } else {
            makeCopy(arguments, target);
        }
    } else if (!exists) {
        requireExpected(arguments);
        // What is only tried appears nowhere near the person's files.
        makeNew(arguments.dryRun ? targetOfTrial()
                                 : outputTarget(arguments.file, arguments.file, false));
    } else {
        requireWritable(arguments.file);
        lock_.emplace(arguments.file);
        requireExpected(arguments);
        if (!arguments.dryRun) {
            removeAbandoned(arguments.file);
        }
    }
}

void SavePlace::makeCopy(const Arguments& arguments, const OutputTarget& target) {
    if (isThere(target.place)) {
        lock_.emplace(target.place);
    }
    const FileLock source(arguments.file, FileLock::Need::ifPossible);
    requireExpected(arguments);
    output_.emplace(target);
    if (const std::error_code error = copyBytes(arguments.file, *output_)) {
        throw Failure(outputFault(target.path, error));
    }
    path_ = output_->hiddenPath();
}

void SavePlace::makeNew(const OutputTarget& target) {
    isNew_ = true;
    output_.emplace(target);
    output_->vacate();
    path_ = output_->hiddenPath();
}

void SavePlace::commit() {
    if (output_) {
        output_->commit({});
    }
}

} // namespace corvane
