// A signed PDF file, but for the signature itself: nobody's key made it.
#pragma once

#include "tests/support/pdf_builder.h"

#include <cstddef>
#include <string>

namespace corvane::test {

/// One page that draws a line. `fields` is the entry Fields of its form: object 5 is a signature
/// field, whose signature (6) covers the whole file and `further` bytes; 8 is a field that leads to
/// 5 and back to itself. `catalog` are more entries of the catalog.
inline std::string signedFile(const std::string& fields, const std::string& catalog = "",
                              int further = 0) {
    const std::string room = "0 0000000300 0000000400 ";
    PdfBuilder builder = PdfBuilder::onePage("1 w 0 0 m 100 100 l S");
    builder
        .object(1, "<</Type/Catalog/Pages 2 0 R/AcroForm<</SigFlags 3/Fields " + fields + ">>" +
                       catalog + ">>")
        .object(5, "<</FT/Sig/T(Approval)/V 6 0 R>>")
        .object(6, "<</Type/Sig/Filter/Adobe.PPKLite/ByteRange[" + room + "0000000000]/Contents<" +
                       std::string(64, '0') + ">>>")
        .object(8, "<</Kids[5 0 R 8 0 R]>>");
    std::string file = builder.bytes();
    const std::string length = std::to_string(static_cast<int>(file.size()) - 400 + further);
    const std::size_t at = file.find(room) + room.size();
    return file.replace(at + 10 - length.size(), length.size(), length);
}

} // namespace corvane::test
