// The dates of PDF files as people read them.
#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// "2026-11-21 09:00:00", in UTC, for "D:20261121100000+01'00'" (PDF Reference, 3.8.2):
/// missing fields have their lowest value, a missing time zone is UTC. Empty for what is no date.
std::string utcText(std::string_view pdfDate);

} // namespace corvane
