// Images that the file has, by what the host calls them.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <string>

namespace corvane {

/// The number of the object that has this key (`imageKeyOf`); 0: there is none, or it is a stencil,
/// whose colour is not its own.
std::int32_t imageObject(DocumentCache& cache, const std::string& key);

} // namespace corvane
