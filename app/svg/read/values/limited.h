// Reading with limits other than the program's.
#pragma once

#include "app/svg/read/budget.h"
#include "app/svg/reader.h"

namespace corvane {

/// As `readSvg` of `app/svg/reader.h`.
SvgReading readSvg(std::string text, Document& document, const ReadingBudget& budget,
                   const ReadingPause& pause = {}, const ImageFolders* files = nullptr,
                   const OpenedPage* opened = nullptr);

} // namespace corvane
