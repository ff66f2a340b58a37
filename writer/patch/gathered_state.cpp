#include "writer/patch/gathered_state.h"

#include "reader/content/losses.h"
#include "runtime/exception.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace corvane {

namespace {

/// A part of the state, and the operator by which it is as a page begins.
struct InitialPart {
    OperatorRole role;
    std::string_view word;
    bool isOfLines; ///< `gs` may set it, too
};
constexpr std::array initialParts = {
    InitialPart{OperatorRole::fillSpace, "0 g\n", false},
    InitialPart{OperatorRole::strokeSpace, "0 G\n", false},
    InitialPart{OperatorRole::lineWidth, "1 w\n", true},
    InitialPart{OperatorRole::cap, "0 J\n", true},
    InitialPart{OperatorRole::join, "0 j\n", true},
    InitialPart{OperatorRole::miterLimit, "10 M\n", true},
    InitialPart{OperatorRole::dash, "[ ] 0 d\n", true},
    InitialPart{OperatorRole::flatness, "0 i\n", false},
    InitialPart{OperatorRole::intent, "/RelativeColorimetric ri\n", false},
};

constexpr std::uint32_t linesBit = std::uint32_t{1} << 31; ///< a `gs` that sets parts of lines
static_assert(static_cast<int>(OperatorRole::external) < 31);

constexpr std::uint32_t roleBit(OperatorRole role) {
    return std::uint32_t{1} << static_cast<int>(role);
}

bool holdsRole(std::uint32_t roles, OperatorRole role) {
    return (roles & roleBit(role)) != 0;
}

std::uint32_t rolesOf(const TraceEvent& event) {
    return roleBit(event.role) | (event.setsLines ? linesBit : 0);
}

/// Whether one of those roles sets the part.
bool sets(std::uint32_t roles, const InitialPart& part) {
    return holdsRole(roles, part.role) || (part.isOfLines && (roles & linesBit) != 0);
}

} // namespace

std::string GatheredState::bytesOf(TraceIndex event) {
    std::string text;
    bytes_.append(text, {trace_.events()[event].start, trace_.events()[event].end});
    text += '\n';
    return text;
}

void GatheredState::enterSpace(const RealMatrix& space) {
    const std::optional<RealMatrix> back = inverse(space_);
    if (space != space_ && back) {
        walk_.text.addMatrix(withoutSignedZeros(multiply(space, *back)));
        walk_.text.add("cm\n");
        space_ = space;
    }
}

void GatheredState::set(const SetterLink& link, const PageMovement& movement) {
    const TraceEvent& event = trace_.events()[link.event];
    const RealMatrix space = multiply(trace_.matrix(link.matrix), movement.masks);
    // A soft mask lies where it was set.
    if ((event.behind.settings & softMaskSetting) != 0 && inverse(space)) {
        enterSpace(space);
    }
    const std::string bytes = bytesOf(link.event);
    const std::size_t slash = bytes.rfind('/');
    if (!event.namesPattern || movement.patterns == RealMatrix() || slash == std::string::npos) {
        walk_.text.add(bytes);
        return;
    }
    const std::string_view name = std::string_view(bytes).substr(slash + 1);
    const std::size_t end = name.find_first_of(" \t\r\n\f");
    walk_.text.add(std::string_view(bytes).substr(0, slash + 1));
    walk_.text.add(patterns_.add(name.substr(0, end), movement.patterns));
    walk_.text.add(end == std::string_view::npos ? "\n" : name.substr(end));
}

std::uint32_t GatheredState::rolesUpTo(TraceIndex setter) {
    if (roles_.empty()) {
        roles_.push_back(0);
    }
    // A link has a greater number than those before it.
    while (roles_.size() <= setter) {
        const SetterLink& link = trace_.setter(static_cast<TraceIndex>(roles_.size()));
        roles_.push_back(roles_[link.former] | rolesOf(trace_.events()[link.event]));
    }
    return roles_[setter];
}

std::uint32_t GatheredState::rolesAround() {
    if (rolesAround_) {
        return *rolesAround_;
    }
    std::uint32_t roles = 0;
    for (const BaseContent* inner = &content_; inner->form != nullptr; inner = inner->around) {
        const ContentTrace& around = inner->around->trace;
        for (TraceIndex setter = around.events()[inner->form->event].behind.setter; setter != 0;
             setter = around.setter(setter).former) {
            roles |= rolesOf(around.events()[around.setter(setter).event]);
        }
    }
    rolesAround_ = roles;
    return roles;
}

bool GatheredState::inherits() {
    return rolesAround() != 0;
}

/// Whether an operator up to this one may have changed settings of `gs` that were made around the
/// content.
bool GatheredState::changesInherited(TraceIndex setter) {
    return trace_.atStart().settings != 0 && holdsRole(rolesUpTo(setter), OperatorRole::external);
}

bool GatheredState::canWriteInitial(std::uint32_t ofOwn, TraceIndex setter) {
    if (!inherits()) {
        return true;
    }
    if (changesInherited(setter)) {
        return false;
    }
    const std::uint32_t set = rolesUpTo(setter);
    return std::ranges::none_of(initialParts, [&](const InitialPart& part) {
        return sets(set, part) && !holdsRole(ofOwn, part.role) && sets(rolesAround(), part);
    });
}

void GatheredState::writeInitial(const Surroundings& own, TraceIndex setter, bool isBehindNew) {
    if (setter == 0 && !isBehindNew) {
        return;
    }
    if (changesInherited(setter)) {
        failException(Exception::unpatchable);
    }
    const std::uint32_t set = rolesUpTo(setter);
    const std::uint32_t ofOwn = rolesUpTo(own.setter);
    for (const InitialPart& part : initialParts) {
        if ((!isBehindNew && !sets(set, part)) || holdsRole(ofOwn, part.role)) {
            continue;
        }
        if (sets(rolesAround(), part)) {
            failException(Exception::unpatchable);
        }
        walk_.text.add(part.word);
    }
}

void GatheredState::setAll(TraceIndex setter, const PageMovement& movement) {
    for (const TraceIndex live : live_.upTo(setter)) {
        set(trace_.setter(live), movement);
    }
}

void GatheredState::write(const Surroundings& own, const RealMatrix& ctm,
                          const PageMovement& movement) {
    space_ = ctm;
    setAll(own.setter, movement);
    enterSpace(trace_.matrix(own.matrix));
}

bool GatheredState::namesPattern(const Surroundings& own) {
    return std::ranges::any_of(live_.upTo(own.setter), [&](TraceIndex live) {
        return trace_.events()[trace_.setter(live).event].namesPattern;
    });
}

void GatheredState::writeOnArtboard(const Surroundings& own) {
    space_ = {};
    setAll(own.setter, {});
    enterSpace({});
}

} // namespace corvane
