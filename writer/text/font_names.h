// What fonts are called in a content.
#pragma once

#include "objects/object.h"
#include "reader/document/cache.h"
#include "reader/text/page_fonts.h"
#include "writer/page/resource_registry.h"

#include <string_view>

namespace corvane {

class FontResourceNames {
public:
    /// Of a content without fonts of the page.
    explicit FontResourceNames(ResourceRegistry& resources) : resources_(resources) {}
    /// Of a content that looks up names in `names`.
    FontResourceNames(DocumentCache& cache, const PageFonts& ofPage, const Object& names,
                      ResourceRegistry& resources)
        : resources_(resources), cache_(&cache), ofPage_(&ofPage), names_(&names) {}

    /// The name of a font of the page, which becomes a resource of the content where it is one of
    /// another. A font that is no indirect object raises `unpatchable` there.
    std::string_view of(const PageFont& font);

    ResourceRegistry& resources() { return resources_; }

private:
    ResourceRegistry& resources_;
    DocumentCache* cache_ = nullptr;
    const PageFonts* ofPage_ = nullptr;
    const Object* names_ = nullptr;
};

} // namespace corvane
