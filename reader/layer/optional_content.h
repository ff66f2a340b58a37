// Optional content: layers of the file, and whether the file shows them.
//
// Source: PDF Reference, 4.10.
#pragma once

#include "host/structure.h"
#include "objects/object.h"
#include "reader/document/cache.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace corvane {

/// A layer as the file has it.
struct FileLayer {
    std::string name;      ///< UTF-8; of a membership dictionary: those of its layers
    bool isVisible = true; ///< as the document begins
    bool isLocked = false; ///< the same
    bool isLayer = false;  ///< it calls itself one
    bool isRule = false;   ///< a membership dictionary: it shows as its layers do
};

class OptionalContent {
public:
    /// What the file says of the layer that an OC entry names; nothing where there is none, or it
    /// cannot be read.
    std::optional<FileLayer> look(DocumentCache& cache, const Object& entry);
    /// Those that the host was told of, by the numbers of their objects.
    const std::unordered_map<std::int32_t, ContentLayer>& known() const { return byNumber_; }
    /// The same of those without a number, by their names and whether they show: nothing else tells
    /// them apart.
    const std::map<std::pair<std::string, bool>, ContentLayer>& unnumbered() const {
        return unnumbered_;
    }
    bool any() const { return told_ > 0; }

    /// What the host calls the layer that an OC entry names: a layer, or a membership dictionary.
    /// Null where there is none, or it cannot be read: what names it shows always.
    ContentLayer find(DocumentCache& cache, const Object& entry);

private:
    /// How the document begins: of layers by the numbers of their objects.
    struct Configuration {
        bool showsOthers = true; ///< layers that it does not name
        std::unordered_set<std::int32_t> on;
        std::unordered_set<std::int32_t> off;
        std::unordered_set<std::int32_t> locked;
    };

    const Configuration& configuration(DocumentCache& cache);
    bool isOn(DocumentCache& cache, std::int32_t layer);
    bool isTrue(DocumentCache& cache, const Object& expression, int depth);
    bool isSpent() const;
    bool isMembershipMet(DocumentCache& cache, const Object& membership);
    FileLayer facts(DocumentCache& cache, const Object& dictionary, std::int32_t number);
    static ContentLayer tell(const FileLayer& layer, std::int32_t number);

    std::optional<Configuration> configuration_;
    std::unordered_map<std::int32_t, ContentLayer> byNumber_; ///< of its object
    std::map<std::pair<std::string, bool>, ContentLayer> unnumbered_;
    std::unordered_map<std::uint32_t, ContentLayer> byPlace_; ///< these, by where they lie
    std::vector<ObjectOwner> held_;                           ///< these: nothing takes their place
    std::int32_t told_ = 0;
    std::int64_t conditions_ = 0; ///< looked at so far
};

} // namespace corvane
