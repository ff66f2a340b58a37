// Where `open` puts the images of a page, and what it says of them.
#pragma once

#include "app/cli/fault.h"
#include "app/cli/files/image_files.h"
#include "app/cli/files/image_folder.h"
#include "app/cli/options/arguments.h"
#include "app/cli/report/report.h"
#include "app/images/embedded_images.h"
#include "app/images/epsf_viewer.h"

#include <optional>
#include <string>
#include <utility>

namespace corvane {

class ImagePlace {
public:
    /// `output` is the path of the artwork; what goes to standard output carries its images, unless
    /// the person names a folder. `folder` outlives the object.
    ImagePlace(const Arguments& arguments, ImageFolder& folder, const std::string& output);

    /// Null: images are not kept.
    ImageStore* store() const { return store_; }
    /// Shows the files that art of the original profile is linked to.
    PlacedFileViewer* viewer() { return &viewer_; }

    /// Runs `body`, which has the plug-in work. Where that failed because an image could not be
    /// written, it raises that.
    template <class Body>
    void explain(Body&& body) const {
        try {
            std::forward<Body>(body)();
        } catch (const Failure&) {
            if (files_ && files_->fault()) {
                throw Failure(*files_->fault());
            }
            throw;
        }
    }

    /// The artwork is there: what was written stays.
    void keep(Report& report);
    void announce(const Arguments& arguments) const;

private:
    ImageFolder& folder_;
    std::string path_; ///< of the folder
    std::optional<ImageFiles> files_;
    std::optional<EmbeddedImages> embedded_;
    ImageStore* store_ = nullptr;
    EpsfViewer viewer_;
};

} // namespace corvane
