// Every seed of the fuzz targets, through the same functions that libFuzzer calls.
#include "fuzz/targets.h"
#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <span>
#include <string>

namespace corvane::fuzz {
namespace {

struct Target {
    std::string name; ///< of its folder of seeds
    void (*function)(Bytes);
};

class Replay : public ::testing::TestWithParam<Target> {};

/// A target ends the process where a promise is broken.
TEST_P(Replay, AllSeeds) {
    const auto& [name, function] = GetParam();
    int seeds = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(test::sourceFolder() / "fuzz" / "seeds" / name)) {
        SCOPED_TRACE(entry.path().filename());
        const std::string bytes = test::fileBytes(entry.path());
        EXPECT_NO_THROW(function(std::as_bytes(std::span(bytes))));
        ++seeds;
    }
    EXPECT_GE(seeds, 5);
}

INSTANTIATE_TEST_SUITE_P(
    Targets, Replay,
    ::testing::Values(Target{"token", fuzzToken}, Target{"dct_decode", fuzzDctDecode},
                      Target{"dct_encode", fuzzDctEncode}, Target{"svg", fuzzSvg},
                      Target{"shading", fuzzShading}, Target{"image_file", fuzzImageFile},
                      Target{"document", fuzzDocument}, Target{"encryption", fuzzEncryption},
                      Target{"fax_decode", fuzzFaxDecode}, Target{"fax_encode", fuzzFaxEncode},
                      Target{"content", fuzzContent}, Target{"save", fuzzSave},
                      Target{"grammar", fuzzGrammar}, Target{"patch", fuzzPatch},
                      Target{"patch_grammar", fuzzPatchGrammar},
                      Target{"resource_fork", fuzzResourceFork}, Target{"font", fuzzFont},
                      Target{"shaping", fuzzShaping}, Target{"cmap", fuzzCMap},
                      Target{"image", fuzzImage}, Target{"jpx", fuzzJpx},
                      Target{"jbig2", fuzzJbig2}, Target{"epsf", fuzzEpsf}),
    [](const auto& target) { return target.param.name; });

#ifdef CORVANE_WITH_WEB
INSTANTIATE_TEST_SUITE_P(Web, Replay, ::testing::Values(Target{"web_request", fuzzWebRequest}),
                         [](const auto& target) { return target.param.name; });
#endif

} // namespace
} // namespace corvane::fuzz
