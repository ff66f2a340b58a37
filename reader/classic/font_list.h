// The host's fonts by name, and what the plug-in asks about them. The host is asked once.
#pragma once

#include "host/classic_text.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace corvane::classic {

class FontList {
public:
    /// The host's number of the font; nothing where it has none of that name. Raises `host`.
    std::optional<std::int32_t> find(std::string_view name);
    const FontInfo& info(std::int32_t font);
    /// Of the font of that name, in ems: as the host has it, or the machine where the host has no
    /// such font.
    Fixed spaceWidth(std::string_view name);

private:
    void list();

    bool isListed_ = false;
    std::map<std::string, std::int32_t, std::less<>> numbers_;
    std::map<std::int32_t, std::unique_ptr<FontInfo>> infos_;
    std::string measuredName_; ///< of the font that the machine measured last
    Fixed measuredSpace_ = 0;
};

} // namespace corvane::classic
