// The layers that art goes into.
#pragma once

#include "app/svg/read/context.h"
#include "app/svg/read/style/attributes.h"

namespace corvane {

class LayerReader {
public:
    explicit LayerReader(Document& document) : document_(document) {}

    static bool isLayer(const Attributes& attributes) {
        return attributes[Attribute::inkscapeGroupmode] == "layer";
    }

    /// Whether one was added.
    bool any() const { return added_; }

    /// The group of a new layer in front of all others; the first is the one the document has.
    Art add(LayerProperties properties);
    /// The group that art outside all layers goes into: a layer without title, in front of those
    /// before it.
    Art loose();

private:
    Document& document_;
    bool added_ = false;
    Art loose_ = Art::null; ///< until the next layer
};

/// Whether a group of a file of ours is the layer of annotations, whether or not editors call it a
/// layer.
bool isOfAnnotations(const Attributes& attributes);

/// Whether editors do not let a person change what is in a layer of these attributes.
bool isLocked(const Attributes& attributes);

/// What a layer's attributes say; `visible`: its element is displayed; `isOurs`: this program wrote
/// the file.
LayerProperties layerProperties(const Attributes& attributes, bool visible, bool isOurs);

} // namespace corvane
