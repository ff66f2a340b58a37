// All that a command found out, for people and for machines.
#pragma once

#include "app/artwork/provenance.h"
#include "app/cli/arguments.h"
#include "app/cli/fault.h"
#include "host/extension.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// `DocumentFacts` that outlive the call which told them.
struct FileFacts {
    DocumentFacts facts; ///< its `version` is empty
    std::string version;
};

struct Report {
    std::optional<FileFacts> file;
    std::vector<PageFacts> pages;
    Provenance source;  ///< the page that was opened
    std::string output; ///< path of the artwork; empty where none was made
    std::vector<Fault> warnings;
    std::optional<Fault> error;
};

/// One object, with a line end.
std::string reportJson(const Arguments& arguments, const Report& report);

/// What `info` prints: the facts of the file, then its pages, equal neighbours in one line.
std::string infoText(const std::string& file, const Report& report);

/// What `check` prints of a file that can be opened.
std::string checkText(const std::string& file, const Report& report);

} // namespace corvane
