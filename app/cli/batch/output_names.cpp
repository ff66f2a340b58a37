#include "app/cli/batch/output_names.h"

#include "app/cli/files/hidden_file.h"

#include <sys/stat.h>

namespace corvane {

OutputNames::OutputNames(const std::vector<std::string>& inputs) : inputs_(inputs) {
    for (const std::string& input : inputs) {
        if (const auto number = numberOf(input)) {
            read_.insert(*number);
        }
    }
}

std::optional<std::string> OutputNames::refusal(const std::string& name, std::uint32_t input) {
    const std::string leaf = name.substr(name.rfind('/') + 1);
    if (leaf.empty() || leaf == "." || leaf == ".." || name == "-") {
        return "\"" + name + "\" is no name of a file; name the output in another way";
    }
    if (const auto there = numberOf(name); there && read_.contains(*there)) {
        return name + " is read from; name another file";
    }
    const auto folder = numberOf(folderOf(name));
    const Place place = folder ? Place(*folder, leaf) : Place(FileNumber(), name);
    const auto [entry, isNew] = taken_.try_emplace(place, input);
    return isNew ? std::nullopt
                 : std::optional(inputs_[entry->second] +
                                 " has the same name of output; tell them apart with {folder} or "
                                 "{page} in -o");
}

std::optional<OutputNames::FileNumber> OutputNames::numberOf(const std::string& path) {
    struct stat facts {};
    return stat(path.c_str(), &facts) == 0 ? std::optional(FileNumber(facts.st_dev, facts.st_ino))
                                           : std::nullopt;
}

} // namespace corvane
