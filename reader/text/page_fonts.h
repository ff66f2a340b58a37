// The fonts of a page by the names that resources give them, each read once.
#pragma once

#include "host/text.h"
#include "objects/object.h"
#include "objects/object_identifier.h"
#include "reader/font/page_font.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

/// A font, and what the host calls it.
struct FontInUse {
    std::unique_ptr<PageFont> font;
    Font handle = Font::null; ///< null until text is shown in it
    ObjectIdentifier object;  ///< number 0: no object of its own
};

class PageFonts {
public:
    /// The font of that name in the resources in use. Null where there is none, or it cannot be
    /// read.
    std::shared_ptr<FontInUse> find(DocumentCache& cache, std::string_view name);

    /// The font that an entry of a dictionary is: a reference to it, or the font itself.
    std::shared_ptr<FontInUse> of(DocumentCache& cache, const Object& entry) {
        return known(cache, entry);
    }

    /// The font that the host calls so, of those that text was shown in; null: none.
    PageFont* find(Font handle) const;

    /// A name of such a font in these resources, its escapes decoded; empty where text was shown in
    /// it by none. Several fonts may be the same one to the host, but codes are those of one.
    std::string_view nameOf(DocumentCache& cache, const Object& resources,
                            const PageFont& font) const;
    /// The object that it is.
    ObjectIdentifier objectOf(const PageFont& font) const;

    /// Gives the host the faces of the fonts that text was shown in.
    void deliver() const;

private:
    /// The fonts that one "Font" dictionary names.
    struct Category {
        ObjectOwner dictionary; ///< held, so that nothing else takes its place in memory
        std::map<std::string, std::shared_ptr<FontInUse>, std::less<>> fonts;
    };

    std::shared_ptr<FontInUse> known(DocumentCache& cache, const Object& entry);
    std::shared_ptr<FontInUse> read(DocumentCache& cache, const Object& entry,
                                    ObjectIdentifier object);

    std::unordered_map<std::uint32_t, Category> categories_; ///< by where the dictionary lies
    std::unordered_map<std::int32_t, std::shared_ptr<FontInUse>> byNumber_; ///< of its object
    std::vector<std::shared_ptr<FontInUse>> all_;
};

/// What the host calls the font; it learns of it when text is first shown in it.
Font handleOf(FontInUse& font);

} // namespace corvane
