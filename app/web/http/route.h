// What a request asks for: its address as one record. Numbers and words of ours only, so that
// nothing of an address reaches the file system.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

struct Route {
    enum class Kind : std::uint8_t {
        page, ///< the document, its script or its looks: `name`
        files,
        info,
        log,
        open,
        artwork,
        picture,
        thumbnail,
        trial,
        save,
        revert,
        alive,
        bye,
    };
    Kind kind = Kind::page;
    std::string_view name = {};              ///< of a part of the page; as the table has it
    std::int32_t file = 0;                   ///< from 1
    std::int32_t page = 0;                   ///< from 1
    std::string token = {};                  ///< of an artwork: 32 hexadecimal digits
    std::optional<std::int32_t> update = {}; ///< of a picture: after which, 0: before all
    std::optional<std::int32_t> size = {};   ///< bytes that the file has to have, or is left alone
    bool force = false;
    bool mend = false;
    bool posts = false; ///< the method is POST, else GET
    bool hasBody = false;
};

/// `target` as the request line has it, with its query, not decoded: no address of ours needs to
/// be. Nothing for any other address.
std::optional<Route> routeOf(std::string_view target);

} // namespace corvane
