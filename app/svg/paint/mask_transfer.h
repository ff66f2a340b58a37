// What becomes of the light or the opacity of a mask, as a filter.
#pragma once

#include "app/svg/sink.h"

#include <span>
#include <string_view>

namespace corvane {

/// The content of a filter that changes light, or opacity.
void writeTransfer(TextOutput&, std::span<const double> transfer, bool changesLight);

/// Writes ` name="0 .5 1"`: the values, as few as say the same.
void writeTransferValues(TextOutput&, std::string_view name, std::span<const double> transfer);

} // namespace corvane
