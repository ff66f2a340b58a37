// The commands. Each raises `Failure`, or fills the report and tells the person the result.
#pragma once

#include "app/cli/options/arguments.h"
#include "app/cli/report/report.h"

namespace corvane {

/// Reads a page and writes it as SVG.
void runOpen(const Arguments& arguments, Report& report);

/// Reads artwork from SVG and appends it to a file as one of its pages. `arguments` take page and
/// profile from the artwork where the person named none.
void runSave(Arguments& arguments, Report& report);

/// Mends a file and changes no page: `save` without artwork.
void runMend(const Arguments& arguments, Report& report);

/// Opens a page in an editor, and saves it whenever the person does.
void runEdit(Arguments arguments, Report& report);

void runInfo(const Arguments& arguments, Report& report);

void runCheck(const Arguments& arguments, Report& report);

/// Lists the updates of a file.
void runLog(const Arguments& arguments, Report& report);

/// Takes the newest update off a file.
void runRevert(const Arguments& arguments, Report& report);

/// Puts the extensions for Inkscape into its folder, or takes them away. `arguments` take the name
/// of the folder.
void runInkscape(Arguments& arguments, Report& report);

} // namespace corvane
