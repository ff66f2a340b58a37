// What stands in front of a JPEG's samples: shared by those who open pages and those who read SVG.
#include "codecs/jpeg/jpeg_lead.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace corvane {
namespace {

using namespace std::string_literals;

std::string segment(char marker, const std::string& bytes) {
    const auto length = static_cast<unsigned>(bytes.size() + 2);
    return "\xFF"s + marker + static_cast<char>(length >> 8) + static_cast<char>(length) + bytes;
}

const std::string start = "\xFF\xD8";
const std::string scan = segment('\xDA', "\1\1\0\0\x3F\0"s);
const std::string jfif = segment('\xE0', "JFIF\0\1\1"s);

/// 5 pixels wide, 258 high, three components.
std::string frame(const std::string& names = "\1\2\3", char marker = '\xC0') {
    std::string bytes = "\x08\x01\x02\0\5\3"s;
    for (const char name : names) {
        bytes += name + "\x11\0"s;
    }
    return segment(marker, bytes);
}

std::string exif(char orientation, const std::string& order = "II*\0\x08\0\0\0"s) {
    return segment('\xE1',
                   "Exif\0\0"s + order + "\1\0\x12\1\3\0\1\0\0\0"s + orientation + "\0\0\0"s);
}

std::string application14(char transform, const std::string& name = "Adobe") {
    return segment('\xEE', name + "\0\x64\0\0\0\0"s + transform);
}

JpegLead leadOf(std::string_view file) {
    const auto read = [&](std::span<std::byte> block) {
        const std::size_t count = std::min(block.size(), file.size());
        std::ranges::copy(std::as_bytes(std::span(file.substr(0, count))), block.begin());
        file.remove_prefix(count);
        return count;
    };
    return readJpegLead(read, 1 << 20);
}

TEST(JpegLead, TellsHowColoursAreCountedAsBrowsersDo) {
    struct Row {
        std::string file;
        bool isYcc;
        int orientation = upright;
    };
    const Row rows[] = {
        {start + frame() + scan, true},
        {start + frame("RGB") + scan, false},
        {start + jfif + frame("RGB") + scan, true},
        {start + application14(0) + frame() + scan, false},
        {start + frame() + application14(0) + scan, false}, // behind the frame counts too
        {start + frame() + scan + application14(0), true},  // behind the scan it does not
        {start + application14(0, "Other") + frame() + scan, true},
        {start + jfif + application14(0) + frame() + scan, true},
        {start + exif(6) + frame() + scan, true, 6},
        {start + exif(1) + exif(6) + frame() + scan, true}, // the first segment counts
        {start + segment('\xE1', "http://ns"s) + exif(3) + frame() + scan, true, 3},
        {start + exif(9) + frame() + scan, true},
        {start + exif(6, "XX*\0\x08\0\0\0"s) + frame() + scan, true},
        {start + "\0\0"s + segment('\xE2', std::string(60000, '\xAB')) + frame() + scan, true},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const JpegLead lead = leadOf(rows[i].file);
        ASSERT_TRUE(lead.frame) << i;
        EXPECT_EQ(lead.frame->width, 5) << i;
        EXPECT_EQ(lead.frame->height, 258) << i;
        EXPECT_EQ(lead.isYccAlone(), rows[i].isYcc) << i;
        EXPECT_EQ(lead.orientation, rows[i].orientation) << i;
    }
}

TEST(JpegLead, HasNoFrameWhereItIsCutShortOrMissing) {
    const std::string whole = start + exif(6) + frame() + scan;
    EXPECT_FALSE(leadOf(start + scan + frame()).frame);
    for (std::size_t count = 0; count < whole.size(); ++count) {
        const JpegLead lead = leadOf(whole.substr(0, count));
        EXPECT_EQ(lead.frame.has_value(), count >= whole.size() - scan.size()) << count;
    }
    EXPECT_EQ(leadOf(start + exif(6)).orientation, 6);
}

} // namespace
} // namespace corvane
