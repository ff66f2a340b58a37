// The files that classic placed art is linked to, each looked at once.
#pragma once

#include "app/artwork/budget.h"
#include "host/image.h"
#include "host/parameters.h"

#include <cstdint>
#include <deque>
#include <map>
#include <string>

namespace corvane {

class ImageTable;

/// What a linked file looks like.
struct PlacedView {
    Image image = Image::null;
    std::int32_t width = 1; ///< of its bounding box, which begins at 0,0
    std::int32_t height = 1;
    std::string address; ///< of the file, as the artwork's SVG names it; empty: it does not
};

/// Shows linked files to people who have no program for them.
class PlacedFileViewer {
public:
    PlacedFileViewer() = default;
    PlacedFileViewer(const PlacedFileViewer&) = delete;
    PlacedFileViewer& operator=(const PlacedFileViewer&) = delete;
    virtual ~PlacedFileViewer() = default;

    /// Raises what keeps the picture from being kept. A file that cannot be shown is a placeholder.
    virtual PlacedView view(const FileSpecification&, ImageTable&) = 0;
};

struct PlacedFile {
    FileSpecification location;
    PlacedView view;
};

/// A linked file of a document; 0 is null.
enum class PlacedFileId : std::uint32_t { null = 0 };

/// Files stay for the document's life.
class PlacedFiles {
public:
    PlacedFiles(ArtworkBudget& budget, ImageTable& images) : budget_(&budget), images_(&images) {}
    PlacedFiles(const PlacedFiles&) = delete;
    PlacedFiles& operator=(const PlacedFiles&) = delete;

    /// Null: files that are added from now on are placeholders.
    void setViewer(PlacedFileViewer* viewer) { viewer_ = viewer; }

    PlacedFileId add(const FileSpecification& location);
    /// A file whose look is known.
    PlacedFileId add(PlacedFile file);
    /// Throws `ArtworkError` where there is no such file.
    const PlacedFile& at(PlacedFileId) const;

private:
    ArtworkBudget* budget_;
    ImageTable* images_;
    PlacedFileViewer* viewer_ = nullptr;
    std::deque<PlacedFile> files_;
    std::map<std::string, PlacedFileId> byPlace_;
};

} // namespace corvane
