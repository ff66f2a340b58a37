#include "app/cli/files/image_folder.h"

#include "app/images/base64.h"

#include <cerrno>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace corvane {

ImageFolder::~ImageFolder() {
    if (isMade_) {
        rmdir(path_.c_str());
    }
}

const std::string& ImageFolder::use() {
    if (!path_.empty() && !isMade_) {
        constexpr mode_t everything = 0777;
        isMade_ = mkdir(path_.c_str(), everything) == 0;
        if (!isMade_ && errno != EEXIST) {
            path_.clear();
        }
    }
    return path_;
}

std::string folderAddress(const std::string& output, const std::string& folder) {
    namespace fs = std::filesystem;
    if (folder.empty()) {
        return {};
    }
    std::error_code error;
    const fs::path start = output == "-" ? fs::path() : fs::path(output).parent_path();
    const fs::path way =
        fs::proximate(fs::absolute(folder), fs::absolute(start.empty() ? "." : start), error);
    return escapedPath(error ? folder : way.string());
}

std::string imageFolderName(const std::string& output) {
    constexpr std::string_view ending = ".svg";
    if (output == "-") {
        return {};
    }
    const bool isSvg = output.size() > ending.size() && output.ends_with(ending);
    return output.substr(0, output.size() - (isSvg ? ending.size() : 0)) + "-images";
}

} // namespace corvane
