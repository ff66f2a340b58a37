// The fonts of a page as files of their own, for people to install.
#pragma once

#include "app/artwork/text/fonts.h"

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace corvane {

/// Writes a file for each face that has one, "Corvane-0A1B2C-Times-Roman.otf", and makes the folder
/// where it is missing. A page without such faces makes nothing. Files of those names are replaced,
/// each when the new one is whole. How many were written; raises `Failure`. The file `input` is
/// never written to.
std::int32_t writeFontFiles(const FontTable& fonts, const std::string& folder,
                            const std::string& input);

/// Names of the files of fonts: none comes twice.
class FontFileNames {
public:
    /// The family's letters and digits, a hyphen for all else between them; numbered where the name
    /// was given out.
    std::string nameOf(std::string_view family);

private:
    std::set<std::string, std::less<>> given_; ///< in lower case: some file systems ignore case
};

} // namespace corvane
