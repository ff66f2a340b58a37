// Shows EPSF files that placed art is linked to: as pictures of the document.
#pragma once

#include "app/artwork/images/placed_files.h"

#include <string>
#include <utility>
#include <vector>

namespace corvane {

class EpsfViewer final : public PlacedFileViewer {
public:
    /// `address` is that of the files' folder, from the artwork.
    explicit EpsfViewer(std::string address) : address_(std::move(address)) {}
    ~EpsfViewer() override;

    /// Hands the picture to the store of `images`.
    PlacedView view(const FileSpecification&, ImageTable& images) override;

    /// The files that were shown stay. Without this call they go again: they were made to be shown.
    void keep() { files_.clear(); }

private:
    std::string address_;
    std::vector<FileSpecification> files_;
};

} // namespace corvane
