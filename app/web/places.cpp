#include "app/web/places.h"

#include "app/web/limits.h"

namespace corvane {

Places::Place::~Place() {
    if (places_ == nullptr) {
        return;
    }
    {
        const std::lock_guard lock(places_->mutex_);
        ++places_->free_;
    }
    places_->changed_.notify_all();
}

std::optional<Places::Place> Places::take(Need need, const std::function<bool()>& isUnwanted) {
    const int spare = need == Need::picture ? 1 : 0;
    std::unique_lock lock(mutex_);
    while (!changed_.wait_for(lock, limits::turn, [&] { return free_ > spare; })) {
        if (isUnwanted()) {
            return std::nullopt;
        }
    }
    --free_;
    return Place(*this);
}

} // namespace corvane
