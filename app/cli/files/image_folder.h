// The folder for the pictures of a page: made when the first one needs it.
#pragma once

#include <string>
#include <utility>

namespace corvane {

class ImageFolder {
public:
    ImageFolder() = default;
    ~ImageFolder();
    ImageFolder(const ImageFolder&) = delete;
    ImageFolder& operator=(const ImageFolder&) = delete;

    /// Empty: there is none.
    void setPath(std::string path) { path_ = std::move(path); }
    const std::string& path() const { return path_; }

    /// Makes the folder where it is missing; empty where there is none or it cannot be made.
    const std::string& use();

    /// The folder stays. Without this call, a folder that `use` made is removed if it is still
    /// empty.
    void keep() { isMade_ = false; }

private:
    std::string path_;
    bool isMade_ = false;
};

/// The address of `folder` for artwork at the path `output` ("-" is standard output); empty where
/// there is no folder.
std::string folderAddress(const std::string& output, const std::string& folder);

/// "page2-images" for "page2.svg"; empty for standard output.
std::string imageFolderName(const std::string& output);

} // namespace corvane
