// The layers of a document, in their order.
#pragma once

#include "app/artwork/budget.h"
#include "host/artwork.h"
#include "host/structure.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace corvane {

struct LayerProperties {
    std::string title; ///< UTF-8
    bool visible = true;
    bool preview = true;
    bool locked = false;
    bool printing = true;
    bool dimmed = false;
    LayerRole role = LayerRole::page;
    friend bool operator==(const LayerProperties&, const LayerProperties&) = default;
};

/// Layers are added, never removed; so a handle is a place in the table, from 1.
class Layers {
public:
    struct Record {
        LayerProperties properties;
        Art art = Art::null; ///< the layer's own group
        Layer inFront = Layer::null;
        Layer behind = Layer::null;
    };

    explicit Layers(ArtworkBudget& budget) : budget_(&budget) {}

    Layer first() const { return first_; }
    Layer last() const { return last_; }

    /// Throws `ArtworkError` where the handle is not of this table.
    const Record& operator[](Layer layer) const { return records_[place(layer)]; }
    void setProperties(Layer, LayerProperties);

    Layer addInFront(Art, LayerProperties);
    Layer addBehind(Art, LayerProperties);

private:
    std::size_t place(Layer) const;
    Layer append(Art, LayerProperties);

    ArtworkBudget* budget_;
    std::vector<Record> records_;
    Layer first_ = Layer::null;
    Layer last_ = Layer::null;
};

} // namespace corvane
