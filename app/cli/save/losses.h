// What a save would lose, and whether the person wants it all the same.
#pragma once

#include "app/artwork/document.h"
#include "app/cli/options/arguments.h"
#include "app/cli/report/report.h"
#include "app/svg/reader.h"

#include <vector>

namespace corvane {

/// A warning for each kind of thing that the saved page will not have. Raises `Failure` where there
/// are some and the person did not say `--force`. What opening left out is lost only if the page is
/// drawn anew: `keepsPage` is false.
void weighLosses(const Arguments& arguments, Document& document,
                 const std::vector<SvgImage>& images, bool keepsPage, Report& report);

/// Layers that were shown or hidden in part change as a whole. Raises `Failure` where there are
/// some and the person did not say `--force`, with which there is a warning for each.
void weighSplitLayers(const Arguments& arguments, const std::vector<SplitLayer>& layers,
                      Report& report);

/// A warning for each kind of thing that opening left out.
void warnOfOmitted(Report& report);

} // namespace corvane
