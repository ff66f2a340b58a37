#include "filters/coding/dct.h"

#include "filters/decoder.h"
#include "runtime/exception.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

namespace corvane {

namespace {

/// Half the built-in quantisers, 16.16.
constexpr Fixed usualQuality = 1 << 15;

std::int32_t entryDiscrete(Filter& filter, Operation operation, std::byte* buffer,
                           std::int32_t* argument);

class IntakeSource : public DctSource {
public:
    IntakeSource(Intake& intake, CodecClock* clock) : intake_(intake), clock_(clock) {}
    std::span<const std::byte> held() override { return intake_.held(); }
    void take(std::size_t count) override {
        intake_.take(count);
        if (clock_ != nullptr) {
            clock_->feed(count);
        }
    }

private:
    Intake& intake_;
    CodecClock* clock_;
};

class DiscreteDecoder : public Decoder {
public:
    DiscreteDecoder(std::int32_t usualTransform, CodecClock* clock)
        : Decoder(entryDecoder), usualTransform_(usualTransform), clock_(clock),
          source_(intake(), clock) {}

protected:
    std::size_t decode(std::span<std::byte> out) override {
        std::size_t done = 0;
        while (done < out.size()) {
            if (row_.empty() && !nextRow()) {
                break;
            }
            const std::size_t piece = std::min(row_.size(), out.size() - done);
            std::memcpy(out.data() + done, row_.data(), piece);
            row_ = row_.subspan(piece);
            done += piece;
        }
        return done;
    }
    void restart() override {
        state_ = DCTInitialize();
        state_->usualTransform = usualTransform_;
        state_->clock = clock_;
        DCTDecodeOpen(*state_, source_);
        row_ = {};
    }
    void skipRest() override {
        if (state_) {
            DCTfree(*state_);
        }
    }

private:
    /// False at the end, and after a failure.
    bool nextRow() {
        if (!state_) {
            return false;
        }
        std::optional<CodecClock::Scope> scope;
        if (clock_ != nullptr) {
            scope.emplace(*clock_);
        }
        // What raises below leaves no state behind.
        std::unique_ptr<DctState> state = std::move(state_);
        row_ = DCTDFilBuf(*state);
        state_ = std::move(state);
        return !row_.empty();
    }

    std::int32_t usualTransform_;
    CodecClock* clock_;
    IntakeSource source_;
    std::unique_ptr<DctState> state_;
    std::span<const std::uint8_t> row_;
};

class FilterSink : public DctSink {
public:
    explicit FilterSink(Filter& filter) : filter_(filter) {}
    void write(std::span<const std::byte> bytes) override { writeFilter(filter_, bytes); }

private:
    Filter& filter_;
};

struct DiscreteEncoder : Filter {
    explicit DiscreteEncoder(const DctSettings& given) : Filter(entryDiscrete), settings(given) {}

    DctSettings settings;
    std::unique_ptr<FilterSink> sink;
    std::unique_ptr<DctState> state;
    std::size_t position = 0; ///< in the row
    std::size_t rowBytes = 0;
};

void linkEncoder(DiscreteEncoder& filter) {
    filter.sink = std::make_unique<FilterSink>(*filter.next);
    filter.state = DCTInitialize();
    filter.state->settings = filter.settings;
    DCTEncodeOpen(*filter.state, *filter.sink);
    filter.rowBytes = filter.settings.width * filter.settings.components;
}

std::int32_t writeRows(DiscreteEncoder& filter, std::span<const std::byte> from) {
    const auto count = static_cast<std::int32_t>(from.size());
    while (!from.empty()) {
        const std::size_t piece = std::min(from.size(), filter.rowBytes - filter.position);
        std::memcpy(filter.state->row.data() + filter.position, from.data(), piece);
        from = from.subspan(piece);
        filter.position += piece;
        if (filter.position == filter.rowBytes) {
            filter.position = 0;
            DCTEFlush(*filter.state);
        }
    }
    return count;
}

void unlinkEncoder(DiscreteEncoder& filter) {
    if (valueException() == Exception::none) {
        DCTfree(*filter.state);
    }
    DCTShutdown(std::move(filter.state));
}

std::int32_t entryDiscrete(Filter& filter, Operation operation, std::byte* buffer,
                           std::int32_t* argument) {
    auto& self = static_cast<DiscreteEncoder&>(filter);
    switch (operation) {
    case Operation::read:
        failException(Exception::io);
    case Operation::write:
        return *argument = writeRows(
                   self, {buffer, static_cast<std::size_t>(std::max(*argument, std::int32_t{0}))});
    case Operation::seek:
        return *argument = seekFilter(*self.next, *argument);
    case Operation::mark:
        return *argument = markFilter(*self.next);
    case Operation::link:
        linkEncoder(self);
        return 0;
    case Operation::unlink:
        unlinkEncoder(self);
        return 0;
    default:
        return 0;
    }
}

} // namespace

FilterOwner setupDiscrete(std::int32_t width, std::int32_t height, std::int32_t components) {
    if (height == 0 || components == 0) {
        return setupDiscreteDecoder(dctUnstatedTransform);
    }
    const auto size = [](std::int32_t value) {
        return static_cast<std::size_t>(std::max(value, std::int32_t{0}));
    };
    DctSettings settings;
    settings.width = size(width);
    settings.height = size(height);
    settings.components = size(components);
    settings.transform = components == 3;
    settings.quality = usualQuality;
    return setupDiscrete(settings);
}

FilterOwner setupDiscreteDecoder(std::int32_t usualTransform, CodecClock* clock) {
    return std::make_unique<DiscreteDecoder>(usualTransform, clock);
}

FilterOwner setupDiscrete(const DctSettings& settings) {
    return std::make_unique<DiscreteEncoder>(settings);
}

} // namespace corvane
