#include "app/cli/edit/key_file.h"

#include "app/cli/text.h"
#include "toolbox/descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

constexpr std::size_t longestFile = 1 << 20;

} // namespace

std::optional<KeyFile> KeyFile::read(const std::string& path) {
    // A pipe of that name is not waited for.
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat facts {};
    if (!file || fstat(file.number(), &facts) != 0 || !S_ISREG(facts.st_mode)) {
        return std::nullopt;
    }
    std::string text;
    std::array<char, 65536> block{};
    while (text.size() <= longestFile) {
        const ssize_t count = ::read(file.number(), block.data(), block.size());
        if (count == 0) {
            return KeyFile(text);
        }
        if (count < 0 && errno != EINTR) {
            return std::nullopt;
        }
        text.append(block.data(), count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return std::nullopt;
}

KeyFile::KeyFile(std::string_view text) {
    Group* group = nullptr;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const std::string_view line = trimmedLine(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        const auto equals = line.find('=');
        if (line.starts_with("[") && line.ends_with("]")) {
            group = &groups_[std::string(line.substr(1, line.size() - 2))];
        } else if (group != nullptr && !line.starts_with("#") && equals != std::string_view::npos) {
            group->try_emplace(std::string(trimmedLine(line.substr(0, equals))),
                               trimmedLine(line.substr(equals + 1)));
        }
    }
}

std::string_view KeyFile::value(std::string_view group, std::string_view key) const {
    const auto found = groups_.find(group);
    if (found == groups_.end()) {
        return {};
    }
    const auto entry = found->second.find(key);
    return entry == found->second.end() ? std::string_view() : entry->second;
}

std::vector<std::string> KeyFile::list(std::string_view group, std::string_view key) const {
    std::vector<std::string> parts;
    std::string_view rest = value(group, key);
    while (!rest.empty()) {
        const auto end = std::min(rest.find(';'), rest.size());
        if (const std::string_view part = trimmedLine(rest.substr(0, end)); !part.empty()) {
            parts.emplace_back(part);
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return parts;
}

bool KeyFile::isTrue(std::string_view group, std::string_view key) const {
    return value(group, key) == "true";
}

std::string unescaped(std::string_view value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        const char kind = value[++i];
        text += kind == 's'   ? ' '
                : kind == 'n' ? '\n'
                : kind == 't' ? '\t'
                : kind == 'r' ? '\r'
                              : kind;
        // Only these are escapes; of all else the backslash is a part, such as of the quoting that
        // a command line has.
        if (std::string_view("sntr\\").find(kind) == std::string_view::npos) {
            text.insert(text.size() - 1, 1, '\\');
        }
    }
    return text;
}

} // namespace corvane
