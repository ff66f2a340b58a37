// The outputs of many tasks, by where they lie and not by how they are spelled.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace corvane {

class OutputNames {
public:
    /// `inputs` are the files that are read; they outlive this.
    explicit OutputNames(const std::vector<std::string>& inputs);

    /// Takes a name for the output of an input. Otherwise the sentence that says why it may not be
    /// written: an input lies there, or an earlier task had the name.
    std::optional<std::string> refusal(const std::string& name, std::uint32_t input);

private:
    using FileNumber = std::pair<std::uint64_t, std::uint64_t>; // device and node
    /// The folder, or none where it is not there, and the name in it.
    using Place = std::pair<FileNumber, std::string>;

    static std::optional<FileNumber> numberOf(const std::string& path);

    const std::vector<std::string>& inputs_;
    std::set<FileNumber> read_;
    std::map<Place, std::uint32_t> taken_;
};

} // namespace corvane
