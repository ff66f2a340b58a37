#include "reader/text/page_fonts.h"

#include "objects/referenced.h"
#include "reader/syntax/syntax.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"

#include <algorithm>
#include <utility>

namespace corvane {

std::shared_ptr<FontInUse> PageFonts::find(DocumentCache& cache, std::string_view name) {
    if (typeObject(cache.resources.get()) != ObjectType::dictionary) {
        return nullptr;
    }
    ObjectOwner dictionary = lookupObject(cache, cache.resources.get(), "Font");
    if (typeObject(dictionary.get()) != ObjectType::dictionary) {
        return nullptr;
    }
    Category& category = categories_[dictionary->data];
    if (typeObject(category.dictionary.get()) == ObjectType::empty) {
        category.dictionary = std::move(dictionary);
    }
    const auto named = category.fonts.find(name);
    if (named != category.fonts.end()) {
        return named->second;
    }
    const Object entry = findEntry(cache, category.dictionary.get(), name);
    if (typeObject(entry) == ObjectType::null) {
        return nullptr; // not kept: a page may make up names without end
    }
    return category.fonts.emplace(name, known(cache, entry)).first->second;
}

std::shared_ptr<FontInUse> PageFonts::known(DocumentCache& cache, const Object& entry) {
    if (typeObject(entry) != ObjectType::reference) {
        return read(cache, entry, {});
    }
    const ObjectIdentifier object = referenced(entry);
    const auto [at, isNew] = byNumber_.try_emplace(object.number);
    if (isNew) {
        at->second = read(cache, entry, object);
    }
    return at->second;
}

std::shared_ptr<FontInUse> PageFonts::read(DocumentCache& cache, const Object& entry,
                                           ObjectIdentifier object) {
    auto font = std::make_shared<FontInUse>();
    font->object = object;
    const bool isRead = attempted([&] {
        const ObjectOwner dictionary = resolveObject(cache, entry);
        font->font = readFont(cache, dictionary.get(), object.number);
    });
    if (!isRead || font->font == nullptr) {
        return nullptr;
    }
    all_.push_back(font);
    return font;
}

PageFont* PageFonts::find(Font handle) const {
    const auto found = std::ranges::find(all_, handle, &FontInUse::handle);
    return handle == Font::null || found == all_.end() ? nullptr : (*found)->font.get();
}

std::string_view PageFonts::nameOf(DocumentCache& cache, const Object& resources,
                                   const PageFont& wanted) const {
    if (typeObject(resources) != ObjectType::dictionary) {
        return {};
    }
    const ObjectOwner dictionary = lookupObject(cache, resources, "Font");
    if (typeObject(dictionary.get()) != ObjectType::dictionary) {
        return {};
    }
    const auto isNamed = [&](const Category& category, const std::string& name,
                             std::int32_t object) {
        if (object == 0) {
            return category.dictionary->data == dictionary->data;
        }
        const Object entry = findEntry(cache, dictionary.get(), name);
        return referenced(entry).number == object;
    };
    for (const auto& [at, category] : categories_) {
        for (const auto& [name, font] : category.fonts) {
            if (font != nullptr && font->font.get() == &wanted &&
                isNamed(category, name, font->object.number)) {
                return name;
            }
        }
    }
    return {};
}

ObjectIdentifier PageFonts::objectOf(const PageFont& wanted) const {
    const auto found = std::ranges::find_if(
        all_, [&](const std::shared_ptr<FontInUse>& font) { return font->font.get() == &wanted; });
    return found == all_.end() ? ObjectIdentifier{} : (*found)->object;
}

void PageFonts::deliver() const {
    for (const std::shared_ptr<FontInUse>& each : all_) {
        if (each->handle == Font::null) {
            continue;
        }
        for (std::int32_t face = 0; face < each->font->faceCount(); ++face) {
            const std::vector<std::byte> file = each->font->makeFace(face);
            callHost(slot::setFontFile, each->handle, face, file.data(),
                     static_cast<std::int32_t>(file.size()));
        }
    }
}

Font handleOf(FontInUse& font) {
    if (font.handle == Font::null) {
        const FontFacts facts = font.font->facts();
        callHost(slot::addFont, &facts, &font.handle);
    }
    return font.handle;
}

} // namespace corvane
