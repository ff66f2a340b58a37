// Why a save was refused, for a person who knows the artwork and the command line.
#pragma once

#include "app/cli/fault.h"
#include "app/cli/options/arguments.h"
#include "app/cli/report/report.h"

#include <string>
#include <vector>

namespace corvane {

/// `fault` of the plug-in, with what is known here of the artwork and its page.
Fault explainedRefusal(const Fault& fault, const Arguments& arguments, const Report& report);

/// Which annotations the artwork has otherwise than the file, the first of many.
std::string annotationsText(const std::vector<std::string>& names);

} // namespace corvane
