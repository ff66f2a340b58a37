// The work of the selectors of `main_entry`. All raise exceptions.
#pragma once

#include "host/parameters.h"

#include <cstdint>

namespace corvane {

/// Registers "Corvane (PDF)" with the host, for files of type "TEXT" and "PDF ".
std::uint32_t selectFileFormat();

/// 0 where the file carries a PDF header in its first 1,000 bytes, otherwise `resultNotFormat`.
/// Warns of the old header "VEX-0.2 ".
std::uint32_t checkFormat(const ParameterBlock& block);

/// Makes the file from the template. Where it cannot be written whole it is deleted again, and
/// raises `io`.
void createFromTemplate(const ParameterBlock& block);

std::uint32_t prepare(ParameterBlock& block);
std::uint32_t go(ParameterBlock& block);
std::uint32_t check(const ParameterBlock& block);
/// Tells the host extension the facts of the file, and of every page.
std::uint32_t info(ParameterBlock& block);
/// Whether the file can be opened: raises what opening it raises; tells the facts of the file
/// and how sound it is.
std::uint32_t diagnose(ParameterBlock& block);
/// As `go` with action `write`, the page chosen by `prepare`, but nothing is written.
std::uint32_t trial(ParameterBlock& block);
/// Tells the host extension every update of the file, from the oldest.
std::uint32_t log(ParameterBlock& block);
/// Takes the newest update off, and tells the host extension which it was. Raises `foreignUpdate`
/// where it is not ours.
std::uint32_t revert(ParameterBlock& block);
/// Mends the file, or with action `read` only counts what that would append, and tells the host
/// extension.
std::uint32_t mend(ParameterBlock& block);

} // namespace corvane
