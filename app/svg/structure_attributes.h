// What groups and layers stand for in the file, as attributes: forms, layers of optional content,
// annotations.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/sink.h"

#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

/// The id of the layer of annotations.
inline constexpr std::string_view annotationsId = "annotations";
/// Of the layer that holds what a page has in no layer of its own.
inline constexpr std::string_view pageLayerId = "layer1";

/// Writes ` data-form="object content"`.
void writeFormFacts(TextOutput&, const FormFacts&);
/// Nothing where the text has another form.
std::optional<FormFacts> parseFormFacts(std::string_view text);

/// Writes the layer that a group shows with, hidden or not. `isListed`: editors show it as a
/// layer.
void writeContentLayer(TextOutput&, const ContentLayerFacts&, bool isListed);

/// Writes ` data-annotations="object content object content ..."`, and what locks the layer in
/// editors.
void writeAnnotations(TextOutput&, const Document&, Art layer);
std::vector<FormFacts> parseAnnotations(std::string_view text);

} // namespace corvane
