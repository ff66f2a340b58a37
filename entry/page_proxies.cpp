#include "entry/page_proxies.h"

#include "reader/page/page_titles.h"
#include "runtime/exception.h"

#include <utility>

namespace corvane {

bool selectProxy(DocumentCache& cache, std::int32_t page, Thumbnail& thumbnail) {
    thumbnail = Thumbnail();
    if (page != 0) {
        pageCache(cache, page);
        thumbnail = thumbCache(cache);
    }
    return thumbnail.width != 0;
}

PageProxy CacheProxies::page(std::int32_t number) {
    PageProxy proxy;
    attempted([&] {
        if (selectProxy(cache_, number, thumbnail_)) {
            proxy.picture = thumbnail_.pixels;
            proxy.pictureWidth = thumbnail_.width;
            proxy.pictureHeight = thumbnail_.height;
        }
        const PageFacts facts = factsCache(cache_);
        proxy.width = (facts.cropBox.right - facts.cropBox.left) * facts.userUnit;
        proxy.height = (facts.cropBox.top - facts.cropBox.bottom) * facts.userUnit;
        if (facts.rotate % 180 != 0) {
            std::swap(proxy.width, proxy.height);
        }
        if (!titles_) {
            titles_ = pageTitles(cache_);
        }
        if (const auto title = titles_->find(facts.objectNumber); title != titles_->end()) {
            proxy.title = title->second;
        }
    });
    return proxy;
}

} // namespace corvane
