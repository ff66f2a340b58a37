#include "app/cli/inkscape/installation.h"

#include "app/cli/fault.h"
#include "app/cli/files/output.h"
#include "app/cli/inkscape/extension_files.h"
#include "app/cli/text.h"
#include "runtime/digest.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <span>
#include <sstream>
#include <unistd.h>
#include <utility>

namespace corvane {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view recordName = "corvane_files"; ///< of what was put into the folder
constexpr std::string_view programName = "corvane_program";

std::string digestOf(std::string_view bytes) {
    Digest digest;
    digest.feed(std::as_bytes(std::span(bytes)));
    return std::to_string(digest.value());
}

/// Whether there is anything, be it a link that leads nowhere.
bool isThere(const std::string& path) {
    std::error_code error;
    return fs::symlink_status(path, error).type() != fs::file_type::not_found;
}

/// Links are no files of ours, wherever they lead; a pipe would keep us waiting.
bool isFile(const std::string& path) {
    std::error_code error;
    return fs::symlink_status(path, error).type() == fs::file_type::regular;
}

/// None where there is no such file.
std::optional<std::string> bytesOf(const std::string& path) {
    if (!isFile(path)) {
        return std::nullopt;
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/// A line for each file: its digest, a blank, its name. None where a line is otherwise, so that the
/// file is somebody else's.
std::optional<std::map<std::string, std::string>> parseRecord(const std::string& bytes) {
    std::map<std::string, std::string> record;
    std::istringstream lines(bytes);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t blank = line.find(' ');
        const std::string name = line.substr(std::min(blank, line.size() - 1) + 1);
        if (blank == 0 || line.find_first_not_of("0123456789") != blank || name.empty() ||
            name.find_first_of(" /") != std::string::npos) {
            return std::nullopt;
        }
        record.emplace(name, line.substr(0, blank));
    }
    return record;
}

/// Inkscape starts from these: they lead to the others.
bool isEntry(const std::string& name) {
    return name.ends_with(".inx");
}

} // namespace

Installation::Installation(std::string folder, std::string program) : folder_(std::move(folder)) {
    for (const ExtensionFile& file : extensionFiles()) {
        files_.emplace(file.name, file.bytes);
    }
    files_.emplace(programName, std::move(program) + "\n");
    if (const auto bytes = bytesOf(pathOf(recordName))) {
        const auto record = parseRecord(*bytes);
        record_ = record.value_or(record_);
        isRecordChanged_ = !record;
    } else {
        isRecordChanged_ = isThere(pathOf(recordName));
    }
}

void Installation::install() {
    for (const std::string& name : names()) {
        if (stateOf(name) == State::changed) {
            changed_.push_back(name);
        }
    }
    if (isRecordChanged_) {
        changed_.emplace_back(recordName);
    }
    if (!changed_.empty()) {
        throw Failure(
            {code::fileChanged, "the folder has files that are not as they were installed (" +
                                    joined(changed_) + "); move them away, and install again"});
    }
    std::error_code error;
    fs::create_directories(folder_, error);
    if (error) {
        throw Failure(outputFault(folder_, error));
    }
    for (const bool entries : {false, true}) {
        for (const auto& [name, bytes] : files_) {
            if (isEntry(name) == entries) {
                write(name, bytes);
            }
        }
    }
    for (const auto& [name, digest] : record_) {
        if (!files_.contains(name)) {
            take(name); // of a version that had more of them
        }
    }
    done_.clear();
    for (const auto& [name, bytes] : files_) {
        done_.push_back(name);
    }
    write(std::string(recordName), recordText());
}

void Installation::remove() {
    for (const bool entries : {true, false}) {
        for (const std::string& name : names()) {
            if (isEntry(name) == entries) {
                take(name);
            }
        }
    }
    std::error_code ignored; // what is not ours keeps the folder, and nothing else is lost
    removeCompiled();
    if (isRecordChanged_) {
        changed_.emplace_back(recordName);
    } else {
        fs::remove(pathOf(recordName), ignored);
    }
    rmdir(folder_.c_str()); // a link to a folder stays
}

/// Python keeps what it made of "corvane_page.py" as "corvane_page.cpython-311.pyc".
void Installation::removeCompiled() const {
    const fs::path folder = pathOf("__pycache__");
    const std::vector<std::string> ours = names();
    std::error_code ignored;
    if (fs::symlink_status(folder, ignored).type() != fs::file_type::directory) {
        return;
    }
    std::vector<fs::path> compiled;
    for (const auto& entry : fs::directory_iterator(folder, ignored)) {
        const std::string name = entry.path().filename();
        if (name.ends_with(".pyc") && isFile(entry.path()) &&
            std::ranges::binary_search(ours, name.substr(0, name.find('.')) + ".py")) {
            compiled.push_back(entry.path());
        }
    }
    for (const fs::path& path : compiled) {
        fs::remove(path, ignored);
    }
    rmdir(folder.c_str());
}

/// Of what was put there, and of what this version puts there.
std::vector<std::string> Installation::names() const {
    std::map<std::string, std::string> all = record_;
    all.insert(files_.begin(), files_.end());
    std::vector<std::string> result;
    result.reserve(all.size());
    for (const auto& [name, bytes] : all) {
        result.push_back(name);
    }
    return result;
}

Installation::State Installation::stateOf(const std::string& name) const {
    if (!isThere(pathOf(name))) {
        return State::missing;
    }
    const auto bytes = bytesOf(pathOf(name));
    if (!bytes) {
        return State::changed;
    }
    const auto wanted = files_.find(name);
    const auto before = record_.find(name);
    const bool isOurs = (wanted != files_.end() && wanted->second == *bytes) ||
                        (before != record_.end() && before->second == digestOf(*bytes));
    return isOurs ? State::ours : State::changed;
}

void Installation::take(const std::string& name) {
    switch (stateOf(name)) {
    case State::missing:
        return;
    case State::changed:
        changed_.push_back(name);
        return;
    case State::ours:
        break;
    }
    std::error_code error;
    fs::remove(pathOf(name), error);
    if (error) {
        throw Failure(outputFault(pathOf(name), error));
    }
    done_.push_back(name);
}

void Installation::write(const std::string& name, const std::string& bytes) {
    OutputFile file(outputTarget(pathOf(name), "", true));
    file.commit(file.write(bytes));
}

std::string Installation::recordText() const {
    std::string text;
    for (const auto& [name, bytes] : files_) {
        text += digestOf(bytes) + " " + name + "\n";
    }
    return text;
}

std::string Installation::pathOf(std::string_view name) const {
    return folder_ + "/" + std::string(name);
}

} // namespace corvane
