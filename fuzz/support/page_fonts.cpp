#include "fuzz/support/page_fonts.h"

#include <string>

namespace corvane::fuzz {

namespace {

/// Programs of fuzz/font_seeds.py: the glyphs A, B and C by name, and CIDs 5, 300 and 7.
constexpr std::string_view namedProgram =
    "010004010001010105536565640001010113F81B028B8BF8ECF88805BA0F8BF70A12BE110001010105536565"
    "64000001002202000401010410213CF8880EF8EC8B16F888F888FC88060EF91E8B16F75CF824F75C8BF75CFC"
    "24080EF9508B16F888F888FC8806FC8804F75CF824F75C8BF75CFC24080E"
    ">";
constexpr std::string_view cidProgram =
    "0100040400010200010005536565640001020001002C1D000001871D000001881D000000000C1E1D00000059"
    "0F1D000000600C251D00000065111D000000B10C2400020200010006000E41646F62654964656E7469747900"
    "00000005012C000700000000000004020001000400100021003CF8880EF8EC8B16F888F888FC88060EF91E8B"
    "16F75CF824F75C8BF75CFC24080EF9508B16F888F888FC8806FC8804F75CF824F75C8BF75CFC24080E8B148B"
    "150001020001000C1D000000041D000000AD12"
    ">";

/// Letters from both sides, a ligature, a letter that has several codes, no text, and half a pair.
constexpr std::string_view toUnicode =
    "1 begincodespacerange <0000> <FFFF> endcodespacerange 5 beginbfchar <0005> <0041> "
    "<012C> <006600660069> <0007> <0041> <0008> <> <0009> <D800> endbfchar "
    "2 beginbfrange <0020> <007E> <0020> <05D0> <05EA> <05D0> endbfrange";

} // namespace

void addFonts(test::PdfBuilder& file) {
    const std::string simple = "<< /Type /Font /Subtype /Type1 /BaseFont /ABCDEF+Seed "
                               "/FirstChar 65 /FontDescriptor 35 0 R ";
    const std::string composite = "<< /Type /Font /Subtype /Type0 /BaseFont /Seed-Identity "
                                  "/DescendantFonts [36 0 R] /ToUnicode 39 0 R ";
    file.object(30, composite + "/Encoding /Identity-H >>")
        .object(31, simple + "/Widths [600 650 700] >>")
        .object(32, simple + "/Widths [600 0 99999] /Encoding << /Differences [65 /B /A /nine "
                             "/f_f_i] >> >>")
        .object(33, "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 9 9] /FontMatrix [.1 0 0 .1 0 "
                    "0] /Encoding << /Differences [65 /A /B /C /D] >> /FirstChar 65 /LastChar 68 "
                    "/Widths [9 9 9 9] /CharProcs << /A 40 0 R /B 43 0 R /C 44 0 R /D 45 0 R >> "
                    ">>")
        .object(34, composite + "/Encoding /Identity-V >>")
        .object(35, "<< /Type /FontDescriptor /FontName /ABCDEF+Seed /Flags 4 /FontFile3 37 0 R >>")
        .object(36, "<< /Type /Font /Subtype /CIDFontType0 /BaseFont /Seed /DW 500 /W [5 [600] 300 "
                    "301 -700] /FontDescriptor << /FontName /Seed /Flags 4 /FontFile3 38 0 R >> >>")
        .stream(37, namedProgram, "/Subtype /Type1C /Filter /ASCIIHexDecode")
        .stream(38, cidProgram, "/Subtype /CIDFontType0C /Filter /ASCIIHexDecode")
        .stream(39, toUnicode)
        .stream(40, "9 0 d0 0 0 9 9 re f")
        .object(41, composite + "/Encoding 42 0 R >>")
        .stream(42, "1 begincodespacerange <00000000> <FFFFFFFF> endcodespacerange "
                    "1 begincidrange <00000000> <FFFFFFFF> 0 endcidrange")
        .stream(43, "9 0 0 0 9 9 d1 1 0 0 rg q 0 0 5 5 re W n 0 0 9 9 re B 1 1 2 2 re f Q Q 3 3 m")
        .stream(44, "9 0 d0 0 0 9 9 re f BT /F4 9 Tf (C) Tj ET")
        .stream(45, "9 0 d0 1 0 0 rg 0 0 3 3 re f BI /W 1 /H 1 /IM true ID a EI");
}

} // namespace corvane::fuzz
