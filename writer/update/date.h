// The time of a save as PDF writes dates.
#pragma once

#include <string>

namespace corvane {

/// Now, in UTC: "D:20261121090000Z" (PDF Reference, 3.8.2). The environment's SOURCE_DATE_EPOCH
/// stands for the time.
std::string dateNow();

} // namespace corvane
