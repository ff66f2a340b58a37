// corvane(1), made of the tables of commands and options.
#pragma once

#include <string>
#include <string_view>

namespace corvane {

std::string programPage(std::string_view date);

} // namespace corvane
