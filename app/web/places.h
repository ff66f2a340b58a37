// How many children may work at a time.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>

namespace corvane {

class Places {
public:
    enum class Need { person, picture };

    /// `count` places, of which pictures leave one to what a person waits for.
    explicit Places(int count) : free_(count) {}

    /// A place as long as it lives.
    class Place {
    public:
        explicit Place(Places& places) : places_(&places) {}
        Place(Place&& other) noexcept : places_(std::exchange(other.places_, nullptr)) {}
        Place& operator=(Place&&) = delete;
        ~Place();

    private:
        Places* places_;
    };

    /// Waits for a place. None where `isUnwanted`, asked now and then, becomes true.
    std::optional<Place> take(Need need, const std::function<bool()>& isUnwanted);

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int free_;
};

} // namespace corvane
