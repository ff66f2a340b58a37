// What groups and layers of art are in the file: forms, layers of optional content, annotations.
#pragma once

#include <cstdint>
#include <string_view>

namespace corvane {

/// A form XObject, drawn once: the group holds what it paints. The group's source is the operator
/// that draws it, in the content around it.
struct FormFacts {
    std::int32_t object = 0;  ///< number of the form in the file; 0: it is in no object
    std::int32_t content = 0; ///< what `ArtSource::content` is of all that it paints; 0: no form
    friend constexpr bool operator==(const FormFacts&, const FormFacts&) = default;
};

/// A layer of optional content that the host's document holds; 0 is null.
enum class ContentLayer : std::uint32_t { null = 0 };

/// PDF Reference, 4.10. Of a membership dictionary: what it makes of its layers.
struct ContentLayerFacts {
    std::string_view name = {}; ///< UTF-8; lives as long as the document
    bool isVisible = true;      ///< as the document begins
    bool isLocked = false;
    std::int32_t object = 0; ///< its number in the file; 0: it is new
};

/// What a layer of the artwork stands for.
enum class LayerRole : std::int32_t {
    page = 0,       ///< content of the page
    annotations = 1 ///< annotations, shown for orientation: no content of the page
};

} // namespace corvane
