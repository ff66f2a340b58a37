// What the catalog says of the layers of a file: which there are, and how the document begins.
//
// Source: PDF Reference, 4.10.3.
#pragma once

#include "objects/object_identifier.h"
#include "reader/document/cache.h"
#include "writer/layer/saved_layers.h"

namespace corvane {

/// The object that holds the value of OCProperties.
struct PropertiesObject {
    ObjectIdentifier object;
    bool isNew = false; ///< the catalog does not name it yet
};

/// The object of the file, or a new number.
PropertiesObject planLayerProperties(DocumentCache& cache);

/// Writes the value, with what the save changes of layers, to the cache's output.
void writeLayerProperties(DocumentCache& cache, const SavedLayers& layers, ObjectIdentifier itself);

/// Writes the new groups, and those with another name, to the cache's output.
void writeLayers(DocumentCache& cache, const SavedLayers& layers);

} // namespace corvane
