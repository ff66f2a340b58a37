#include "writer/page/content_names.h"

#include "objects/referenced.h"
#include "reader/syntax/stream/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

#include <span>
#include <utility>

namespace corvane {

namespace {

/// Bytes of content: a tenth of a second, and more than pages have.
constexpr std::int64_t mostBytes = 1 << 26;

/// What looking at an object costs, in bytes of content.
constexpr std::int64_t bytesOfObject = 1 << 10;

bool isDictionary(const Object& object) {
    return typeObject(object) == ObjectType::dictionary;
}

} // namespace

ContentNames::ContentNames(DocumentCache& cache, const std::vector<ObjectOwner>& streams,
                           const Object& resources)
    : cache_(&cache), left_(mostBytes) {
    for (const ObjectOwner& stream : streams) {
        readStream(stream.get());
    }
    addResources(resources);
    readAll();
}

void ContentNames::addAnnotations() {
    const ObjectOwner annotations = lookupObject(*cache_, cache_->page.get(), "Annots");
    if (typeObject(annotations.get()) != ObjectType::array) {
        return;
    }
    for (const Object& element : elementsObject(annotations.get())) {
        attempted([&] {
            const ObjectOwner annotation = resolveObject(*cache_, element);
            if (isDictionary(annotation.get())) {
                const ObjectOwner looks = lookupObject(*cache_, annotation.get(), "AP");
                if (isDictionary(looks.get())) {
                    add(findEntry(*cache_, looks.get(), "N"));
                }
            }
        });
        left_ -= bytesOfObject;
        if (isCut()) {
            return;
        }
    }
    readAll();
}

void ContentNames::readAll() {
    while (!pending_.empty() && !isCut()) {
        const ObjectOwner object = std::move(pending_.back());
        pending_.pop_back();
        attempted([&] {
            if (isDictionary(object.get())) {
                // The states of an appearance, or the procedures of a font.
                addEach(object.get());
                return;
            }
            readStream(object.get());
            addResources(lookupObject(*cache_, object.get(), "Resources").get());
        });
    }
}

void ContentNames::readStream(const Object& stream) {
    const std::int64_t before = std::exchange(cache_->work.pageBytes, 0);
    attempted([&] {
        StreamChain chain(*cache_, stream);
        std::vector<std::byte> block(1 << 16);
        while (const std::size_t count = isCut() ? 0 : readFilter(chain.top(), block)) {
            names_.read(std::span(block).first(count));
            left_ -= static_cast<std::int64_t>(count);
        }
    });
    cache_->work.pageBytes = before;
    names_.endContent();
}

void ContentNames::addResources(const Object& resources) {
    if (!isDictionary(resources)) {
        return;
    }
    const auto each = [&](std::string_view category, const auto& use) {
        const ObjectOwner named = lookupObject(*cache_, resources, category);
        if (!isDictionary(named.get())) {
            return;
        }
        const std::span<Object> elements = elementsObject(named.get());
        for (std::size_t i = 1; i < elements.size() && !isCut(); i += 2) {
            attempted([&] { use(elements[i]); });
        }
    };
    // Of a value that is a dictionary, what leads to content.
    const auto within = [&](std::string_view key, std::string_view further) {
        return [=, this](const Object& value) {
            left_ -= bytesOfObject;
            const ObjectOwner dictionary = resolveObject(*cache_, value);
            if (!isDictionary(dictionary.get())) {
                return;
            }
            const Object entry = findEntry(*cache_, dictionary.get(), key);
            const ObjectOwner inner = resolveObject(*cache_, entry);
            if (further.empty()) {
                add(entry);
            } else if (isDictionary(inner.get())) {
                add(findEntry(*cache_, inner.get(), further));
            }
        };
    };
    each("XObject", [&](const Object& value) { add(value); });
    each("Pattern", [&](const Object& value) { add(value); });
    each("Font", within("CharProcs", ""));
    each("ExtGState", within("SMask", "G"));
}

void ContentNames::addEach(const Object& dictionary) {
    const std::span<Object> elements = elementsObject(dictionary);
    for (std::size_t i = 1; i < elements.size() && !isCut(); i += 2) {
        attempted([&] {
            const ObjectOwner value = resolveObject(*cache_, elements[i]);
            if (typeObject(value.get()) == ObjectType::stream) {
                add(elements[i]);
            }
        });
    }
}

/// A stream of content, or a dictionary of such.
void ContentNames::add(const Object& value) {
    left_ -= bytesOfObject;
    if (typeObject(value) == ObjectType::reference) {
        const ObjectIdentifier content = referenced(value);
        if (!seen_.emplace(content.number, content.generation).second) {
            return;
        }
    }
    ObjectOwner object = resolveObject(*cache_, value);
    const ObjectType type = typeObject(object.get());
    const bool isImage = type == ObjectType::stream &&
                         typeObject(findEntry(*cache_, object.get(), "Width")) != ObjectType::null;
    if (!isImage && (type == ObjectType::stream || type == ObjectType::dictionary)) {
        pending_.push_back(std::move(object));
    }
}

} // namespace corvane
