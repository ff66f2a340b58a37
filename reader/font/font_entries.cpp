#include "reader/font/font_entries.h"

#include "reader/syntax/stream/stream_chain.h"
#include "reader/syntax/syntax.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

ObjectOwner nullValue() {
    ObjectOwner value;
    shallowObject(value.get(), ObjectType::null, 0);
    return value;
}

} // namespace

ObjectOwner entryOf(DocumentCache& cache, const Object& dictionary, std::string_view key) {
    ObjectOwner value = nullValue();
    if (isDictionary(dictionary)) {
        attempted([&] { value = lookupObject(cache, dictionary, key); });
    }
    return value;
}

ObjectOwner resolved(DocumentCache& cache, const Object& object) {
    ObjectOwner value;
    return tryResolveObject(cache, object, value) == Exception::none ? std::move(value)
                                                                     : nullValue();
}

bool isDictionary(const Object& object) {
    return object.type == ObjectType::dictionary || object.type == ObjectType::stream;
}

std::optional<double> numberOf(const Object& object) {
    if (object.type == ObjectType::integer || object.type == ObjectType::fixed) {
        return realNumber(object);
    }
    return std::nullopt;
}

std::string nameOf(const Object& object) {
    return object.type == ObjectType::literal ? std::string(literalObject(object)) : std::string();
}

std::string stringOf(const Object& object) {
    if (object.type == ObjectType::text) {
        return std::string(textObject(object));
    }
    if (object.type == ObjectType::block) {
        std::string bytes;
        for (const std::byte byte : blockObject(object)) {
            bytes.push_back(std::to_integer<char>(byte));
        }
        return bytes;
    }
    return {};
}

std::optional<double> numberEntry(DocumentCache& cache, const Object& dictionary,
                                  std::string_view key) {
    return numberOf(entryOf(cache, dictionary, key).get());
}

std::string nameEntry(DocumentCache& cache, const Object& dictionary, std::string_view key) {
    return nameOf(entryOf(cache, dictionary, key).get());
}

std::vector<double> numbersEntry(DocumentCache& cache, const Object& dictionary,
                                 std::string_view key, std::size_t most) {
    const ObjectOwner array = entryOf(cache, dictionary, key);
    std::vector<double> numbers;
    if (array->type == ObjectType::array) {
        const std::span<Object> elements = elementsObject(array.get());
        for (const Object& element : elements.first(std::min(elements.size(), most))) {
            numbers.push_back(numberOf(resolved(cache, element).get()).value_or(0));
        }
    }
    return numbers;
}

std::vector<std::byte> bytesOfStream(DocumentCache& cache, const Object& stream,
                                     std::size_t limit) {
    std::vector<std::byte> bytes;
    if (stream.type != ObjectType::stream) {
        return bytes;
    }
    attempted([&] {
        StreamChain chain(cache, stream);
        std::size_t block = 1 << 14;
        while (bytes.size() < limit) {
            const std::size_t start = bytes.size();
            bytes.resize(std::min(limit, start + block));
            const std::size_t count = readFilter(chain.top(), std::span(bytes).subspan(start));
            bytes.resize(start + count);
            if (count == 0) {
                break;
            }
            block = bytes.size();
        }
    });
    return bytes;
}

} // namespace corvane
