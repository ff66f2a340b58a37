#include "app/cli/image_place.h"

#include "app/cli/messages.h"
#include "app/cli/text.h"

namespace corvane {

ImagePlace::ImagePlace(const Arguments& arguments, ImageFolder& folder, const std::string& output)
    : folder_(folder), path_(folder.path()), viewer_(folderAddress(output, path_)) {
    if (arguments.imagePlace == PartPlace::none) {
        return;
    }
    if (arguments.imagePlace == PartPlace::artwork || path_.empty()) {
        store_ = &embedded_.emplace();
    } else {
        store_ = &files_.emplace(folder, output, arguments.file);
    }
}

void ImagePlace::keep(Report& report) {
    folder_.keep();
    viewer_.keep();
    if (files_) {
        files_->keep();
        if (files_->written() + files_->found() != 0) {
            report.images = {path_, files_->written(), files_->found()};
        }
    }
}

void ImagePlace::announce(const Arguments& arguments) const {
    const std::int32_t count = files_ ? files_->written() + files_->found() : 0;
    if (count == 0) {
        return;
    }
    note(arguments, counted(count, "image") + (count == 1 ? " is in " : " are in ") + path_);
    if (const std::int32_t changed = files_->changed(); changed != 0) {
        note(arguments, counted(changed, "image") + (changed == 1 ? " there was" : " there were") +
                            " changed since the page was opened before, and stay" +
                            (changed == 1 ? "s" : "") + " so; saving puts that into the page");
    }
}

} // namespace corvane
