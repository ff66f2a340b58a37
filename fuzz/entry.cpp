// The door that libFuzzer knocks on; CORVANE_FUZZ_TARGET is the target of this program.
#include "fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    corvane::fuzz::CORVANE_FUZZ_TARGET(std::as_bytes(std::span(data, size)));
    return 0;
}
