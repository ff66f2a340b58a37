#include "tests/support/process.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace corvane::test {

namespace fs = std::filesystem;

fs::path buildFolder() {
    for (fs::path folder = fs::read_symlink("/proc/self/exe").parent_path();
         folder != folder.root_path(); folder = folder.parent_path()) {
        if (fs::exists(folder / "CMakeCache.txt")) {
            return folder;
        }
    }
    throw std::runtime_error("the test does not lie in a build folder");
}

fs::path sourceFolder() {
    return fs::path(CORVANE_SOURCE_FOLDER);
}

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (fs::temp_directory_path() / "corvane-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    for (const auto& entry : fs::recursive_directory_iterator(path_, ignored)) {
        if (entry.is_directory(ignored)) {
            fs::permissions(entry.path(), fs::perms::owner_all, ignored);
        }
    }
    fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::add(const std::string& name, const std::string& bytes) const {
    const fs::path path = path_ / name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path.string();
}

std::vector<std::string> TemporaryFolder::names() const {
    std::vector<std::string> result;
    for (const auto& entry : fs::directory_iterator(path_)) {
        result.push_back(entry.path().filename().string());
    }
    std::ranges::sort(result);
    return result;
}

std::string fileBytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error(path.string() + " cannot be read");
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace corvane::test
