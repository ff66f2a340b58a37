#include "app/cli/program.h"

#include <cstddef>
#include <span>

int main(int argc, char** argv) {
    const std::span words(argv, static_cast<std::size_t>(argc));
    return corvane::runProgram(words.subspan(words.empty() ? 0 : 1));
}
