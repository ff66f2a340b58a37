// Inline images: their entries, and finding where their data end.
#pragma once

#include "filters/token/token.h"
#include "objects/object.h"
#include "runtime/memory.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

struct Interpreter;

/// Bytes of the data of the inline image whose entries are on the operand stack; -1 where they
/// cannot be told: the data are encoded, or of a colour space that is not a device's.
std::int64_t imageDataLength(Interpreter& interpreter);

/// The entries on the operand stack as a dictionary, their names as they stand.
ObjectOwner imageDictionary();

/// Bytes that are gone past.
struct ImageData {
    std::string bytes;
    ZoneCharge charge;

    void add(std::string_view more);
};

/// Bytes behind "EI" in which the next token of the page must show itself.
inline constexpr std::size_t imageFollowBytes = 32;
/// Whether what stands behind "EI" is page content: nothing, an operand or an operator.
bool mayFollowImage(std::string_view follow);

/// Goes past the data of an inline image, up to its "EI", which is the next token then. Data of a
/// known length are believed where "EI" follows them. Otherwise the two letters are searched for:
/// behind white space or the end mark of an ASCII filter, and with page content behind them, since
/// data may hold them by chance. What it goes past is added to `data`, where there is such.
void skipImageData(TokenFilter& tokens, std::int64_t length, ImageData* data = nullptr);

} // namespace corvane
