// The resources in which a content of the base looks up names, as entries in their own bytes.
#pragma once

#include "reader/syntax/raw_entries.h"
#include "writer/patch/base/base_content.h"

#include <vector>

namespace corvane {

std::vector<RawEntry> entriesOfResources(DocumentCache& cache, const BaseContent& content,
                                         const PageBase& base);

} // namespace corvane
