// Colour spaces of several inks, for mixtures of the artwork (PDF Reference, 4.5.5, "DeviceN").
#pragma once

#include "host/inks.h"
#include "objects/object_identifier.h"
#include "reader/document/cache.h"
#include "reader/paint/colour_space.h"
#include "reader/paint/spaces_by_inks.h"
#include "writer/paint/gradient_text.h"

#include <map>

namespace corvane {

class InkSpaces {
public:
    /// The spaces that resources name are known beside those that were read for the page.
    void know(const Object& resources) { unread_ = sharedObject(resources); }

    /// The space of a mixture: a known one that has its inks, and of several of them one in which
    /// the tints look like the mixture; else a new one, in which they do.
    ObjectIdentifier of(DocumentCache& cache, PaintSource mixture, FunctionHolder& objects);

private:
    void readUnread(DocumentCache& cache);
    ColourSpacePointer known(DocumentCache& cache, const InkMixtureFacts& mixture);
    ObjectIdentifier find(DocumentCache& cache, const InkMixtureFacts& mixture,
                          FunctionHolder& objects);

    ObjectOwner unread_; ///< resources; empty: none
    SpacesByInks ofResources_;
    std::map<PaintSource, ObjectIdentifier> found_;
    std::map<ColourSpacePointer, ObjectIdentifier> copied_; ///< that have no number in the file
};

} // namespace corvane
