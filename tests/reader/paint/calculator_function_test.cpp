#include "reader/paint/calculator_function.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace corvane {
namespace {

/// What a program leaves of 0.5 and 2, the topmost two numbers; "none" where it is no program.
std::string result(std::string_view program) {
    const Function::Interval wide{-1000, 1000};
    const FunctionPointer function = readCalculator(program, {wide, wide}, {wide, wide});
    if (function == nullptr) {
        return "none";
    }
    const std::array in = {0.5, 2.0};
    std::array<double, 2> out{};
    function->evaluate(in, out);
    return std::to_string(out[0]).substr(0, 6) + " " + std::to_string(out[1]).substr(0, 6);
}

TEST(CalculatorFunctionTest, Programs) {
    struct Row {
        std::string program;
        const char* wanted;
    };
    std::string deep = "{";
    std::string many = "{";
    for (int i = 0; i < 200; ++i) {
        deep += " true { ";
        many += " 1";
    }
    for (const Row& row : {
             Row{"{}", "0.5000 2.0000"},
             Row{"{ exch }", "2.0000 0.5000"},
             Row{"{ sub dup neg }", "-1.500 1.5000"},
             Row{"{ 3 3 1 roll }", "0.5000 2.0000"},
             Row{"{ 3 -1 roll }", "0.5000 2.0000"},
             Row{"{ 5 not 1 2 lt not }", "-6.000 0.0000"},
             Row{"{ true false or not 6 3 and not }", "0.0000 -3.000"},
             Row{"{ 3 3 -1 roll }", "3.0000 0.5000"},
             Row{"{ 1 index }", "2.0000 0.5000"},
             Row{"{ 2 copy add }", "2.0000 2.5000"},
             Row{"{ exch 0.4 gt { 7 } { 8 } ifelse }", "2.0000 7.0000"},
             Row{"{ 1 lt { 9 } if 6 % remark }\n}", "0.5000 6.0000"},
             Row{"{ 7 3 mod -7 2 idiv }", "1.0000 -3.000"},
             Row{"{ 1 3 bitshift 12 10 xor }", "8.0000 6.0000"},
             Row{"{ -1 0 atan 90 sin }", "270.00 1.0000"},
             Row{"{ 1 0 div 5 0 mod }", "0.0000 0.0000"},
             Row{"{ -1 ln 1e9 }", "-1000. 1000.0"}, // no number, and one past the range
             Row{"{ pop pop pop pop }", "0.0000 0.0000"},
             Row{many + "}", "1.0000 1.0000"}, // more than the stack holds
             Row{"{ frob }", "none"},
             Row{"{ 1 ", "none"},
             Row{"1 2", "none"},
             Row{"{ true { 1 } { 2 } }", "none"},
             Row{deep, "none"},
         }) {
        EXPECT_EQ(result(row.program), row.wanted) << row.program;
    }
}

} // namespace
} // namespace corvane
