// The door that libFuzzer knocks on; CORVANE_FUZZ_TARGET is the target of this program.
#include "fuzz/targets.h"

/// What fontconfig keeps for the life of the process.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    corvane::fuzz::CORVANE_FUZZ_TARGET(std::as_bytes(std::span(data, size)));
    return 0;
}
