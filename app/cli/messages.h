// What the program says on standard error.
#pragma once

#include "app/cli/fault.h"
#include "app/cli/options/arguments.h"
#include "app/cli/report/report.h"

#include <string>
#include <string_view>

namespace corvane {

/// "corvane: report.pdf: error 7: the file is encrypted; ...", safe to print. Cancelling is
/// no error: "corvane: report.pdf: cancelled".
std::string errorLine(const std::string& file, const Fault& fault);
std::string warningLine(const std::string& file, const Fault& fault);

/// "corvane: " and `sentence`, safe to print.
std::string plainLine(const std::string& sentence);

/// Writes a line; what standard error refuses is lost.
void complain(const std::string& line);

/// Says something helpful that is no fault, unless the person asked for `--quiet` or `--json`.
void note(const Arguments& arguments, const std::string& sentence);

/// The same for a sentence that names its file itself.
void announce(const Arguments& arguments, const std::string& sentence);

/// Says all warnings, unless they are in the facts, and the error, unless the facts stand there
/// too.
void tell(const Arguments& arguments, const Report& report);

/// Whether standard output is where the artwork goes, so that facts go to standard error.
bool outputIsStandard(const Arguments& arguments);

} // namespace corvane
