// Operators that show text, taken apart into tokens.
#include "writer/patch/text/show_bytes.h"

#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

/// "word before... : element | element"
std::string parts(std::string_view bytes) {
    const std::optional<ShowBytes> show = showBytes(bytes);
    if (!show) {
        return "none";
    }
    std::string text(show->word);
    for (const std::string_view each : show->before) {
        text += " " + std::string(each);
    }
    std::string separator = ": ";
    for (const std::string_view each : show->elements) {
        text += separator + std::string(each);
        separator = " | ";
    }
    return text;
}

TEST(ShowBytes, Tokens) {
    struct Row {
        const char* bytes;
        const char* parts;
    };
    for (const Row& row : {
             Row{"(ab) Tj", "Tj: (ab)"},
             Row{"(ab)Tj", "Tj: (ab)"},
             Row{"(a(b)c(()))'", "': (a(b)c(()))"},
             Row{R"((a\)b) Tj)", R"(Tj: (a\)b))"},
             Row{R"((a\(b\\) Tj)", R"(Tj: (a\(b\\))"},
             Row{R"((%\\\)%) Tj)", R"(Tj: (%\\\)%))"},
             Row{"(a\n] TJ b) Tj", "Tj: (a\n] TJ b)"},
             Row{"<4 1\n42> Tj", "Tj: <4 1\n42>"},
             Row{"<>Tj", "Tj: <>"},
             Row{"1 -.5(ab)\"", "\" 1 -.5: (ab)"},
             Row{"[(a)-120(b)<63>+.5]TJ", "TJ: (a) | -120 | (b) | <63> | +.5"},
             Row{"[(]) ([) (\\]) ] TJ", "TJ: (]) | ([) | (\\])"},
             Row{"[] TJ", "TJ"},
             Row{"% (no) Tj\n(ab) % [\r Tj", "Tj: (ab)"},
             Row{"[(a) % ] TJ\n 5 (b)] TJ", "TJ: (a) | 5 | (b)"},
             Row{"[(a) null /N#20 true 3 false (b)] TJ",
                 "TJ: (a) | null | /N#20 | true | 3 | false | (b)"},
             // What comes before the operands is dropped by readers.
             Row{"9 /Name (x) (ab) Tj", "Tj: (ab)"},
             Row{"[(x)] [(ab) 3] TJ", "TJ: (ab) | 3"},
             Row{"<</A [(x)]>> 7 2 1 (ab) \"", "\" 2 1: (ab)"},
             // Other operands, or cut off.
             Row{"", "none"},
             Row{"Tj", "none"},
             Row{"5 Tj", "none"},
             Row{"<</A 1>> Tj", "none"},
             Row{"1 (ab) \"", "none"},
             Row{"(ab) TJ", "none"},
             Row{"] TJ", "none"},
             Row{"(ab Tj", "none"},
             Row{"(ab\\", "none"},
             Row{"<6162 Tj", "none"},
             Row{"(ab) Tf", "none"},
             Row{"[(ab)] Tj", "none"},
             // Elements that are several tokens.
             Row{"[[(x)] (ab)] TJ", "none"},
             Row{"[(ab) [(x)]] TJ", "none"},
             Row{"[<</A 1>> (ab)] TJ", "none"},
         }) {
        EXPECT_EQ(parts(row.bytes), row.parts) << row.bytes;
    }
}

} // namespace
} // namespace corvane
