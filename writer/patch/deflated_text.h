// A text as the data of a stream with the filter FlateDecode.
#pragma once

#include <string>
#include <string_view>

namespace corvane {

std::string deflated(std::string_view text);

} // namespace corvane
