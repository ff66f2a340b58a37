#include "app/cli/files/font_folder.h"

#include "app/cli/fault.h"
#include "app/cli/files/output.h"
#include "app/svg/text/font_names.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <span>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

/// A folder that was made here goes again if it is still empty.
class MadeFolder {
public:
    explicit MadeFolder(const std::string& path) : path_(path) {
        constexpr mode_t everything = 0777;
        isMade_ = mkdir(path.c_str(), everything) == 0;
        if (!isMade_ && errno != EEXIST) {
            throw Failure(outputFault(path, lastError()));
        }
    }
    ~MadeFolder() {
        if (isMade_) {
            rmdir(path_.c_str());
        }
    }
    MadeFolder(const MadeFolder&) = delete;
    MadeFolder& operator=(const MadeFolder&) = delete;

private:
    const std::string path_;
    bool isMade_ = false;
};

bool isUpper(char c) {
    return c >= 'A' && c <= 'Z';
}

bool isLetterOrDigit(char c) {
    return isUpper(c) || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return isUpper(c) ? static_cast<char>(c | 0x20) : c; });
    return text;
}

void writeFile(const std::string& path, const std::string& input, std::span<const std::byte> file) {
    OutputFile output(outputTarget(path, input, true));
    std::string bytes(file.size(), '\0');
    std::ranges::transform(file, bytes.begin(),
                           [](std::byte b) { return std::to_integer<char>(b); });
    output.commit(output.write(bytes));
}

} // namespace

std::string FontFileNames::nameOf(std::string_view family) {
    // A name in a folder has 255 bytes at most; what is hidden while it is written has some more.
    constexpr std::size_t longest = 200;
    std::string stem;
    bool isGap = false;
    for (const char c : family.substr(0, longest)) {
        if (isLetterOrDigit(c)) {
            stem += isGap && !stem.empty() ? "-" : "";
            stem += c;
        }
        isGap = !isLetterOrDigit(c);
    }
    if (stem.empty()) {
        stem = "font";
    }
    std::string name = stem;
    for (std::int32_t number = 2; !given_.insert(lowerCase(name)).second; ++number) {
        name = stem + "-" + std::to_string(number);
    }
    return name + ".otf";
}

std::int32_t writeFontFiles(const FontTable& fonts, const std::string& folder,
                            const std::string& input) {
    std::int32_t count = 0;
    FontFileNames names;
    std::optional<MadeFolder> made;
    for (std::uint32_t number = 1; number <= fonts.size(); ++number) {
        const auto font = static_cast<Font>(number);
        for (std::int32_t face = 0; face < fonts.faceCount(font); ++face) {
            const std::span<const std::byte> file = fonts.file(font, face);
            if (file.empty()) {
                continue;
            }
            if (!made) {
                made.emplace(folder);
            }
            const std::string family = familyOfFace(fonts.facts(font).family, face);
            writeFile(folder + "/" + names.nameOf(family), input, file);
            ++count;
        }
    }
    return count;
}

} // namespace corvane
