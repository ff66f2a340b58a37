#include "app/artwork/images/placed_files.h"

#include "app/artwork/error.h"
#include "app/artwork/images/image_table.h"

#include <utility>

namespace corvane {

namespace {

/// Volume, directory and name, to tell files apart.
std::string placeOf(const FileSpecification& location) {
    std::string place =
        std::to_string(location.volume) + ':' + std::to_string(location.directory) + ':';
    const std::size_t length = location.name[0];
    if (length == 0 || length >= sizeof(location.name)) {
        throw ArtworkError("a placed file has no name");
    }
    place.append(location.name + 1, location.name + 1 + length);
    return place;
}

PlacedView placeholder(ImageTable& images) {
    bool wantsBytes = false;
    const Image image = images.add({.width = 1, .height = 1, .isPlaceholder = true}, wantsBytes);
    return {.image = image, .address = {}};
}

} // namespace

PlacedFileId PlacedFiles::add(const FileSpecification& location) {
    const std::string place = placeOf(location);
    if (const auto known = byPlace_.find(place); known != byPlace_.end()) {
        return known->second;
    }
    return add(
        {location, viewer_ == nullptr ? placeholder(*images_) : viewer_->view(location, *images_)});
}

PlacedFileId PlacedFiles::add(PlacedFile file) {
    std::string place = placeOf(file.location);
    budget_->charge(
        static_cast<std::int64_t>(sizeof(PlacedFile) + place.size() + file.view.address.size()));
    files_.push_back(std::move(file));
    const auto id = static_cast<PlacedFileId>(files_.size());
    byPlace_.insert_or_assign(std::move(place), id);
    return id;
}

const PlacedFile& PlacedFiles::at(PlacedFileId id) const {
    const auto number = static_cast<std::size_t>(id);
    if (number == 0 || number > files_.size()) {
        throw ArtworkError("the placed object has no file");
    }
    return files_[number - 1];
}

} // namespace corvane
