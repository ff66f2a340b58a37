// What programs that are started get from us.
#pragma once

#include <string>
#include <vector>

namespace corvane {

/// `words`, which stay where they are, as an argument list.
std::vector<char*> spawnWords(std::vector<std::string>& words);

/// Our environment but for CORVANE_PASSWORD.
std::vector<char*> environmentWithoutPassword();

} // namespace corvane
