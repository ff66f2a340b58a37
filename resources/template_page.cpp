// The file that a save begins with where there is none to append to.
#include "resources/resources.h"

namespace corvane {

namespace {

// Lines end in a carriage return, as in every text resource; writing turns them into line feeds, so
// that the offsets in the cross-reference hold.
constexpr std::string_view page = "%PDF-1.4\r"
                                  "%Corvane template page\r"
                                  "1 0 obj\r"
                                  "<</Type /Catalog\r"
                                  "/Pages 2 0 R\r"
                                  ">>\r"
                                  "endobj\r"
                                  "2 0 obj\r"
                                  "<</Type /Pages\r"
                                  "/Kids [3 0 R]\r"
                                  "/Count 1\r"
                                  ">>\r"
                                  "endobj\r"
                                  "3 0 obj\r"
                                  "<</Type /Page\r"
                                  "/Parent 2 0 R\r"
                                  "/MediaBox [0 0 612 792]\r"
                                  "/Resources <</ProcSet [/PDF]\r"
                                  ">>\r"
                                  "/Contents 4 0 R\r"
                                  ">>\r"
                                  "endobj\r"
                                  "4 0 obj\r"
                                  "<</Length 0\r"
                                  ">>\r"
                                  "stream\r"
                                  "\r"
                                  "endstream\r"
                                  "endobj\r"
                                  "5 0 obj\r"
                                  "<</Producer (Corvane)\r"
                                  ">>\r"
                                  "endobj\r"
                                  "xref\r"
                                  "0 6\r"
                                  "0000000000 65535 f \r"
                                  "0000000032 00000 n \r"
                                  "0000000080 00000 n \r"
                                  "0000000136 00000 n \r"
                                  "0000000254 00000 n \r"
                                  "0000000302 00000 n \r"
                                  "trailer\r"
                                  "<</Size 6\r"
                                  "/Root 1 0 R\r"
                                  "/Info 5 0 R\r"
                                  ">>\r"
                                  "startxref\r"
                                  "342\r"
                                  "%%EOF\r";
static_assert(page.size() >= 256, "a file that is shorter cannot be opened");

} // namespace

std::string_view templateFile() {
    return page;
}

} // namespace corvane
