// The fuzz targets: each feeds one reader with any bytes.
//
// A numbered exception is a right answer. A fault is whatever the sanitizers find, an escaping C++
// exception, blocks of the zone left behind, or a broken promise that a target checks (`require`).
// Inputs are plain files; what a target has to choose (sizes, places) comes from their digest.
#pragma once

#include "runtime/digest.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

namespace corvane::fuzz {

using Bytes = std::span<const std::byte>;

void fuzzToken(Bytes input);
void fuzzDocument(Bytes input);
void fuzzEncryption(Bytes input);
void fuzzContent(Bytes input);
void fuzzSave(Bytes input);
void fuzzGrammar(Bytes input);
void fuzzPatch(Bytes input);
void fuzzPatchGrammar(Bytes input);
void fuzzResourceFork(Bytes input);
void fuzzLzw(Bytes input);
void fuzzHex(Bytes input);
void fuzzBase85(Bytes input);
void fuzzRunLength(Bytes input);
void fuzzFlate(Bytes input);
void fuzzPredictor(Bytes input);
void fuzzSamples(Bytes input);
void fuzzFaxDecode(Bytes input);
void fuzzFaxEncode(Bytes input);
void fuzzDctDecode(Bytes input);
void fuzzDctEncode(Bytes input);
void fuzzShading(Bytes input);
void fuzzSvg(Bytes input);
void fuzzFont(Bytes input);
void fuzzShaping(Bytes input);
void fuzzCMap(Bytes input);
void fuzzImage(Bytes input);
void fuzzImageFile(Bytes input);
void fuzzEpsf(Bytes input);
void fuzzJpx(Bytes input);
void fuzzJbig2(Bytes input);
void fuzzWebRequest(Bytes input); ///< where the program is built with `serve`

/// Bytes of the zone, and of the artwork, that one input may take.
inline constexpr std::int64_t memoryLimit = std::int64_t{64} << 20;

/// Numbers that depend on the input and on nothing else.
class Choices {
public:
    explicit Choices(Bytes input) {
        Digest digest;
        digest.feed(input);
        state_ = digest.value();
    }

    /// From 0 to `limit` - 1.
    std::uint32_t below(std::uint32_t limit) {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>(state_ >> 33) % limit;
    }

private:
    std::uint64_t state_;
};

/// Ends the process where a promise is broken, and says where.
inline void require(bool kept, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    if (!kept) {
        std::fprintf(stderr, "%s:%d: a promise is broken\n", file, line);
        std::abort();
    }
}

} // namespace corvane::fuzz
