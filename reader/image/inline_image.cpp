#include "reader/image/inline_image.h"

#include "filters/token/character.h"
#include "objects/stack.h"
#include "reader/content/content_keywords.h"
#include "reader/content/interpreter.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>

namespace corvane {

namespace {

/// Value of an entry by its full or short name; null where it is missing. Not retained.
Object entryOf(std::string_view name, std::string_view shortName) {
    const std::int32_t count = countStack();
    for (std::int32_t depth = count - 1; depth > 0; depth -= 2) {
        const Object key = indexStack(depth);
        if (typeObject(key) == ObjectType::literal &&
            (literalObject(key) == name || literalObject(key) == shortName)) {
            return indexStack(depth - 1);
        }
    }
    Object null;
    shallowObject(null, ObjectType::null, 0);
    return null;
}

std::int64_t wholeNumber(const Object& object) {
    return typeObject(object) == ObjectType::integer ? integerObject(object) : -1;
}

/// Bits of one pixel, or -1.
std::int64_t pixelBits(Interpreter& interpreter) {
    const Object mask = entryOf("ImageMask", "IM");
    if (typeObject(mask) == ObjectType::boolean && booleanObject(mask)) {
        return 1;
    }
    const Object space = entryOf("ColorSpace", "CS");
    if (typeObject(space) != ObjectType::literal) {
        return -1;
    }
    ColourSpacePointer known;
    attempted(
        [&] { known = interpreter.colourSpaces.find(interpreter.cache, literalObject(space)); });
    const std::int64_t bits = wholeNumber(entryOf("BitsPerComponent", "BPC"));
    return known && known->components > 0 && bits > 0 && bits <= 16 ? bits * known->components : -1;
}

bool endsHere(std::string_view ahead) {
    return ahead.starts_with("EI") && mayFollowImage(ahead.substr(2, imageFollowBytes));
}

class DataPasser {
public:
    DataPasser(TokenFilter& tokens, ImageData* data) : tokens_(tokens), data_(data) {}

    /// Goes past `length` bytes; false where there are fewer.
    bool passBytes(std::int64_t length) {
        while (length > 0) {
            const std::size_t held = tokens_.ahead(1).size();
            if (held == 0) {
                return false;
            }
            const auto piece = std::min<std::int64_t>(length, static_cast<std::int64_t>(held));
            pass(static_cast<std::size_t>(piece));
            length -= piece;
        }
        return true;
    }

    void searchEnd() {
        constexpr std::size_t reach = 2 * imageFollowBytes;
        for (;;) {
            const std::string_view ahead = tokens_.ahead(reach);
            const bool isLast = ahead.size() < reach;
            const std::size_t at = ahead.find("EI");
            if (at == std::string_view::npos) {
                // The last two bytes come again: what stands before "EI", and its first letter.
                pass(isLast ? ahead.size() : ahead.size() - 2);
                if (isLast) {
                    return;
                }
                continue;
            }
            if (!isLast && at + 2 + imageFollowBytes > ahead.size()) {
                pass(at - 1);
                continue;
            }
            const char before = at == 0 ? ' ' : ahead[at - 1];
            const bool isSeparate = isSpace(before) || before == '>';
            if (isSeparate && endsHere(ahead.substr(at))) {
                pass(at);
                return;
            }
            pass(at + 1);
        }
    }

private:
    void pass(std::size_t count) {
        if (data_ != nullptr) {
            data_->add(tokens_.ahead(count).substr(0, count));
        }
        tokens_.skip(count);
    }

    TokenFilter& tokens_;
    ImageData* data_;
};

} // namespace

std::int64_t imageDataLength(Interpreter& interpreter) {
    if (typeObject(entryOf("Filter", "F")) != ObjectType::null) {
        return -1;
    }
    const std::int64_t width = wholeNumber(entryOf("Width", "W"));
    const std::int64_t height = wholeNumber(entryOf("Height", "H"));
    const std::int64_t bits = pixelBits(interpreter);
    if (width <= 0 || height <= 0 || bits <= 0) {
        return -1;
    }
    const std::int64_t rowBytes = (width * bits + 7) / 8;
    return rowBytes <= budget::pageBytes / height ? rowBytes * height : -1;
}

ObjectOwner imageDictionary() {
    constexpr std::int32_t mostEntries = 64;
    const std::int32_t count = std::min(countStack() / 2, mostEntries) * 2;
    const Ref<Object> elements = allocateRecord<Object>(count);
    for (std::int32_t i = 0; i < count; ++i) {
        Object& element = elements[static_cast<std::size_t>(i)];
        element = indexStack(count - 1 - i);
        retainObject(element);
    }
    Object dictionary;
    groupedObject(dictionary, ObjectType::dictionary, elements, count);
    return ObjectOwner(dictionary);
}

void ImageData::add(std::string_view more) {
    if (bytes.size() + more.size() > bytes.capacity()) {
        const std::size_t room = 2 * (bytes.size() + more.size());
        charge.resize(static_cast<std::int64_t>(room));
        bytes.reserve(room);
    }
    bytes += more;
}

void skipImageData(TokenFilter& tokens, std::int64_t length, ImageData* data) {
    DataPasser passer(tokens, data);
    if (length >= 0 && passer.passBytes(length) &&
        endsHere(tokens.aheadOfSpace(2 + imageFollowBytes))) {
        return;
    }
    passer.searchEnd();
}

bool mayFollowImage(std::string_view follow) {
    if (!follow.empty() && isRegular(follow.front())) {
        return false;
    }
    const auto token = std::find_if_not(follow.begin(), follow.end(), isSpace);
    if (token == follow.end() || !isRegular(*token)) {
        return true;
    }
    const auto end = std::find_if_not(token, follow.end(), isRegular);
    const std::string_view word(&*token, static_cast<std::size_t>(end - token));
    return characterClass(*token) != CharacterClass::regular ||
           contentKeywords().find(word) != nullptr;
}

} // namespace corvane
