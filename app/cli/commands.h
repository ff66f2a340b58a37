// What the commands do. Each raises `Failure`, or fills the report and says what people want to
// see.
#pragma once

#include "app/cli/arguments.h"
#include "app/cli/report.h"

namespace corvane {

/// Reads a page and writes it as SVG.
void runOpen(const Arguments& arguments, Report& report);

void runInfo(const Arguments& arguments, Report& report);

void runCheck(const Arguments& arguments, Report& report);

} // namespace corvane
