// What the pages of a file look like, for the page chooser.
#pragma once

#include "host/front.h"
#include "reader/document/cache.h"
#include "reader/image/thumbnail.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace corvane {

/// Makes page `page` the page in use and reads its thumbnail; page 0 gives `thumbnail` up. False
/// where the page has none.
bool selectProxy(DocumentCache& cache, std::int32_t page, Thumbnail& thumbnail);

class CacheProxies final : public PageProxies {
public:
    explicit CacheProxies(DocumentCache& cache) : cache_(cache) {}

    PageProxy page(std::int32_t number) override;

private:
    DocumentCache& cache_;
    std::optional<std::map<std::int32_t, std::string>> titles_;
    Thumbnail thumbnail_;
};

} // namespace corvane
