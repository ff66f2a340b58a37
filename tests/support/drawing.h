// Pages as a peer draws them, and programs that a machine may lack.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {

/// Whether a program of that name is installed.
bool isInstalled(std::string_view program);

struct Drawing {
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<std::uint8_t> samples; ///< red, green, blue, row by row
};

/// Page `page` (from 1) as `mutool` draws it, annotations included. Throws where it does not.
Drawing draw(const std::filesystem::path& pdf, int page);

/// Share of the pixels, 0 to 1, that differ in a component by more than `tolerance`, the drawings
/// being of one size; 1 where they are not.
double difference(const Drawing& one, const Drawing& other, int tolerance = 24);

/// Share of the pixels that are not white.
double ink(const Drawing& drawing);

} // namespace corvane::test
