// The scalable fonts of the machine, as fontconfig lists them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <fontconfig/fontconfig.h>

namespace corvane {

struct InstalledFont {
    std::string path;
    std::int32_t face = 0;
    std::string postScriptName;
    std::string family;
    std::vector<std::string> families; ///< stems, see font_names.h
    std::int32_t weight = 400;
    std::int32_t width = 100; ///< percent
    bool isItalic = false;
    bool isFixedPitch = false;
    bool isTrueType = false;
    bool isType1 = false; ///< has fewer characters than its twin in OpenType
    const FcCharSet* characters = nullptr;

    bool covers(std::u32string_view text) const;
};

class InstalledFonts {
public:
    /// Lists the fonts, in the order of their paths. Variable fonts are there as their named
    /// instances.
    InstalledFonts();

    const std::vector<InstalledFont>& list() const { return list_; }

private:
    struct Closer {
        void operator()(FcConfig* config) const { FcConfigDestroy(config); }
        void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
    };

    std::unique_ptr<FcConfig, Closer> config_;
    std::unique_ptr<FcFontSet, Closer> set_; ///< owns the sets of characters
    std::vector<InstalledFont> list_;
};

/// Listed once: fonts seldom come while a program runs.
const InstalledFonts& installedFonts();

} // namespace corvane
