// The PostScript with which an EPSF file draws its own picture. Lines end in a carriage return, as
// in every text resource.
#include "resources/resources.h"

namespace corvane {

std::string_view epsfImageProcedures() {
    return "1 \"beginimage\"\r"
           "gsave\r"
           "12 dict begin\r"
           "gsave\r"
           "/beginimage {\r"
           "/red cols string def\r"
           "/green cols string def\r"
           "/blue cols string def\r"
           "/pad cols string def\r"
           "cols rows scale\r"
           "cols rows 8 [cols 0 0 rows neg 0 rows]\r"
           "{currentfile red readstring pop}\r"
           "{currentfile green readstring pop}\r"
           "{currentfile blue readstring pop currentfile pad readstring pop pop}\r"
           "true 3 colorimage\r"
           "} def\r";
}

std::string_view epsfMaskProcedures() {
    return "/beginimage {\r"
           "/row cols 7 add 8 idiv string def\r"
           "cols rows scale\r"
           "cols rows false [cols 0 0 rows neg 0 rows]\r"
           "{currentfile row readstring pop} imagemask\r"
           "} def\r";
}

} // namespace corvane
