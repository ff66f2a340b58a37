// The images of a page as files in a folder.
#pragma once

#include "app/artwork/images/image_store.h"
#include "app/cli/fault.h"
#include "app/cli/files/image_folder.h"
#include "app/images/embedded_images.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// A file for each image, "12-0a1b2c3d4e5f6071.png", which appears when it is whole. Bitmap letters
/// are in the artwork: a page has hundreds, of some hundred bytes each, and nobody edits them as
/// pictures. A file of that name that is there stays as it is. The folder is made with the first
/// image. Files that were written go again with the object, unless they are to be kept.
class ImageFiles final : public ImageStore {
public:
    /// The artwork will be at the path `output` ("-" is standard output). The file `input` is never
    /// written to. `folder` outlives the object.
    ImageFiles(ImageFolder& folder, const std::string& output, std::string input);
    ~ImageFiles() override;

    std::optional<ImageFile> find(const ImageFacts&) override;
    std::unique_ptr<ImageSink> begin(const ImageFacts&) override;

    void keep();

    std::int32_t written() const { return static_cast<std::int32_t>(written_.size()); }
    std::int32_t found() const { return found_; } ///< that were there
    std::int32_t changed() const {
        return changed_;
    } ///< of those: by others since they were written
    /// Why an image could not be written.
    const std::optional<Fault>& fault() const { return fault_; }

private:
    class NewFile;
    class SameFile;

    std::string pathOf(const ImageFacts&) const;
    std::string addressOf(const std::string& path) const;
    void noteFound(bool isChanged);
    template <class Body>
    auto remember(Body&& body);

    ImageFolder& folder_;
    EmbeddedImages letters_;
    std::string place_;   ///< of the folder
    std::string address_; ///< of the folder, from the artwork
    std::string input_;
    std::vector<std::string> written_;
    bool isKept_ = false;
    std::int32_t found_ = 0;
    std::int32_t changed_ = 0;
    std::optional<Fault> fault_;
};

} // namespace corvane
