#include "app/artwork/storage/number_index.h"

namespace corvane {

NumberIndex::~NumberIndex() {
    budget_->discharge(static_cast<std::int64_t>(places_.size() * sizeof(Place)));
}

void NumberIndex::reserve() {
    if (used_ < places_.size() / 2) {
        return;
    }
    std::vector<Place> before(places_.empty() ? firstPlaces : places_.size() * 2);
    budget_->charge(static_cast<std::int64_t>((before.size() - places_.size()) * sizeof(Place)));
    places_.swap(before);
    used_ = 0;
    for (const Place& place : before) {
        if (place.taken != 0) {
            add(place.hash, place.taken - 1);
        }
    }
}

void NumberIndex::add(std::uint32_t hash, std::uint32_t number) noexcept {
    for (std::size_t probe = 0; probe < mostProbes; ++probe) {
        Place& place = places_[(hash + probe) & (places_.size() - 1)];
        if (place.taken == 0) {
            place = {hash, number + 1};
            ++used_;
            return;
        }
    }
}

} // namespace corvane
