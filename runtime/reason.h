// Why an exception was raised, where its code has several reasons that a person should know.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

/// Reasons of `crossReference`, from `unmendableHeader` on of `repairedFile`, and from
/// `missingLetter` on of `unpatchable`. The sentence of each is in resources/texts.
enum class Reason : std::int32_t {
    none = 0,
    missingPassword = 1,
    wrongPassword = 2,
    unknownHandler = 3,    ///< the name is that of the security handler
    unknownMethod = 4,     ///< the name is that of the method
    damagedEncryption = 5, ///< what the file says of its encryption cannot be
    unmendableHeader = 6,
    directCatalog = 7,     ///< the catalog has no number
    unnamedEncryption = 8, ///< the trailer that counts does not name the encryption of the file
    unnumberedPage = 9,    ///< in a page tree that has to be made anew
    missingLetter = 10,    ///< the name is a letter that no font has
    restrictedFont = 11,   ///< the name is a font that must not be put into files
    textDrawnAnew = 12,    ///< text on a page that is drawn anew, in the original profile
    drawnLetters = 13,     ///< a letter of a Type 3 font would make paths of its text
    unreadableImage = 14,  ///< the host does not have the bytes of an image that it shows
    imageElsewhere = 15, ///< only the frame of an image is at hand, and no object of the file is it
    ownLayer = 16,       ///< an object that names its layer itself was taken out of that layer
};

struct NotedReason {
    Reason reason = Reason::none;
    std::string name;
};

/// Notes a reason until it is taken.
void noteReason(Reason reason, std::string_view name = {});
NotedReason takeReason();

} // namespace corvane
