// The codec's failure reports. Every one raises `codec`.
#pragma once

namespace corvane {

[[noreturn]] void dct_error();

/// The data ended too early.
[[noreturn]] void DCTDTruncateError();
/// No marker where one must be, or another one.
[[noreturn]] void DCTDNoMarker();
/// A code that no Huffman table has, or a value that no block can hold.
[[noreturn]] void DCTDBadHuff();

} // namespace corvane
