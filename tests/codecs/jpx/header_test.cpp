// What a JPEG 2000 file may ask for before it is decoded.
#include "codecs/jpx/header.h"

#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

using namespace std::string_literals;

std::string number(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = bytes - 1; i >= 0; --i) {
        text += static_cast<char>(value >> (8 * i));
    }
    return text;
}

/// SIZ of one gray component in one tile.
std::string size(std::uint32_t side) {
    return "\xFF\x4F\xFF\x51"s + number(41, 2) + number(0, 2) + number(side, 4) + number(side, 4) +
           number(0, 4) + number(0, 4) + number(side, 4) + number(side, 4) + number(0, 4) +
           number(0, 4) + number(1, 2) + "\x07\x01\x01"s;
}

/// COD; `precincts`: a byte for each of two levels, or nothing.
std::string style(std::uint32_t layers, const std::string& precincts, char blocks = 4) {
    const std::string fields = (precincts.empty() ? "\0\0"s : "\1\0"s) + number(layers, 2) +
                               "\0\1"s + blocks + blocks + "\0\1"s + precincts;
    return "\xFF\x52"s + number(static_cast<std::uint32_t>(fields.size() + 2), 2) + fields;
}

const std::string tile = "\xFF\x90\x00\x0A\0\0\0\0\0\0\0\1"s;

bool isTaken(const std::string& file) {
    return readJpxHeader(std::as_bytes(std::span(file)), false).has_value();
}

TEST(JpxHeader, AsksForNoMoreThanPicturesDo) {
    const std::string small = "\x11\x11"s;
    struct Row {
        std::string file;
        bool isTaken;
    };
    const Row rows[] = {
        {size(1000) + style(1, ""), true},
        {size(1000) + style(20, "\x77\x77"), true},
        {size(1000) + style(1, small), false},                       // precincts of two samples
        {size(1000) + style(1, "", 0) + tile, true},                 // blocks of four: 62,500
        {size(4000) + style(1, "", 0) + tile, false},                // a million
        {size(1000) + style(2000, "\x33\x33"), false},               // packets of 2,000 layers
        {size(1000) + style(1, "") + tile + style(1, small), false}, // stated by a tile
        {size(1000) + style(1, "") + "\xFF\x53\x00\x0A\0\1\1\4\4\0\1"s + small, false},
        {size(20000) + style(1, ""), false}, // 400 million samples in a hundred bytes
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(isTaken(rows[i].file), rows[i].isTaken) << i;
    }
}

} // namespace
} // namespace corvane
