// Real files cut short or with random bytes in them: any page and any error is right, but soon and
// in order.
//
// The sample is bounded; CORVANE_DAMAGE=all cuts at every 1000th byte of every file.
#include "tests/app/hostile_run.h"
#include "tests/support/pdf_builder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {
namespace {

constexpr std::size_t cutStep = 1000;
constexpr int damagedBytes = 20;

bool testsAll() {
    const char* wish = std::getenv("CORVANE_DAMAGE");
    return wish != nullptr && std::string_view(wish) == "all";
}

/// How often each file is cut and damaged.
std::size_t timesEach(std::size_t sample) {
    return testsAll() ? SIZE_MAX : sample;
}

std::vector<std::filesystem::path> pdfFilesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    if (std::filesystem::is_directory(folder)) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            if (entry.is_regular_file() && entry.path().extension() == ".pdf") {
                files.push_back(entry.path());
            }
        }
    }
    std::ranges::sort(files);
    return files;
}

/// Lengths to cut at: `wanted` of the multiples of 1000, from all over the file.
std::vector<std::size_t> cuts(std::size_t length, std::size_t wanted) {
    const std::size_t possible = (length + cutStep - 1) / cutStep;
    const std::size_t taken = std::min(possible, wanted);
    std::vector<std::size_t> result;
    for (std::size_t i = 0; i < taken; ++i) {
        result.push_back(i * possible / taken * cutStep);
    }
    return result;
}

std::string damaged(std::string bytes, std::mt19937& random) {
    for (int i = 0; i < damagedBytes && !bytes.empty(); ++i) {
        bytes[random() % bytes.size()] = static_cast<char>(random() & 0xFF);
    }
    return bytes;
}

/// Sees to it that every variant is answered in order.
void expectOrderly(const std::string& bytes, std::size_t cutCount, int damageCount,
                   std::uint32_t seed) {
    for (const std::size_t length : cuts(bytes.size(), cutCount)) {
        SCOPED_TRACE("cut at " + std::to_string(length));
        EXPECT_GE(openHostile(bytes.substr(0, length)), 0);
    }
    std::mt19937 random(seed);
    for (int i = 0; i < damageCount; ++i) {
        SCOPED_TRACE("damage " + std::to_string(i));
        EXPECT_GE(openHostile(damaged(bytes, random)), 0);
    }
}

TEST(Damage, GeneratedFiles) {
    std::string content;
    for (int i = 0; i < 400; ++i) {
        content += "q 1 0 0 1 5 5 cm 0 0 m " + std::to_string(i) + " 40 l S Q\n";
    }
    const std::string bytes = PdfBuilder::onePage(content, "/Rotate 90").bytes();
    expectOrderly(bytes, SIZE_MAX, 100, 1);
}

TEST(Damage, Examples) {
    for (const auto& file : pdfFilesIn(sourceFolder() / "examples")) {
        SCOPED_TRACE(file.filename());
        expectOrderly(fileBytes(file), SIZE_MAX, 20, 2);
    }
}

TEST(Damage, FilesOfTheCorpus) {
    const auto files = pdfFilesIn(sourceFolder() / "../shared/corpus");
    if (files.empty()) {
        GTEST_SKIP() << "no corpus beside the sources";
    }
    for (const auto& file : files) {
        SCOPED_TRACE(file.filename());
        expectOrderly(fileBytes(file), timesEach(3), testsAll() ? 10 : 2, 3);
    }
}

} // namespace
} // namespace corvane::test
