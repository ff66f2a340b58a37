// What was found wrong in a file and mended while it was read.
#pragma once

#include "host/mend.h"

#include <array>
#include <cstdint>
#include <set>

namespace corvane {

class Mending {
public:
    /// Notes damage of the file itself, once for each kind.
    void note(Mend kind);
    /// Notes damage of one object; the same object counts once for each kind. Objects past
    /// `budget::mendedObjects` are not noted. Number 0, of an object that has none, is not either.
    void note(Mend kind, std::int32_t number);

    bool isNothing() const;
    bool has(Mend kind) const { return count(kind) > 0; }
    std::int32_t count(Mend kind) const { return counts_[static_cast<std::size_t>(kind)]; }
    const MendCounts& counts() const { return counts_; }
    /// The objects that have this damage, ascending.
    const std::set<std::int32_t>& objects(Mend kind) const {
        return objects_[static_cast<std::size_t>(kind)];
    }
    /// Forgets all but the header: the rest is read again.
    void forgetObjects();

private:
    MendCounts counts_{};
    std::array<std::set<std::int32_t>, mendKinds> objects_;
    std::size_t noted_ = 0; ///< objects of all kinds
};

} // namespace corvane
