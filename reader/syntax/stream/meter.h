// The meter: passes on what the filter below delivers, and keeps work on it within bounds.
#pragma once

#include "filters/filter.h"
#include "reader/document/cache.h"

namespace corvane {

/// Counts the bytes delivered in `work`; past `budget::pageBytes` it raises `limit`. Every 64 KB
/// the host is asked whether the person wants to stop: `cancelled`. A page may be megabytes without
/// a token, so the loop over tokens does not ask often enough.
FilterOwner setupMeter(ReadingWork& work);

} // namespace corvane
