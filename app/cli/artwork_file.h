// The artwork that the person wants to save: SVG from a file or from standard input.
#pragma once

#include "app/artwork/document.h"
#include "app/cli/terminal/progress.h"
#include "app/svg/reader.h"

#include <string>
#include <vector>

namespace corvane {

/// Reads `path` ("-": standard input) into `document`, which is new, and the images of `files` that
/// it shows; `line` shows how far it is; `opened`: as `readSvg` gets it. Raises `Failure` where it
/// cannot be read, is no artwork or is larger than artwork may be, or the person asked to stop.
SvgReading readArtwork(const std::string& path, Document& document, const ImageFolders& files,
                       ProgressLine& line, const OpenedPage* opened = nullptr);

/// The images that the artwork does not hold, for a message: " (logo.png, photo.jpg, 2 embedded)".
/// Many are cut short; empty for none.
std::string imageNames(const std::vector<SvgImage>& images);

} // namespace corvane
