#include "reader/paint/calculator_function.h"

#include "filters/token/character.h"
#include "runtime/budget.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numbers>
#include <optional>
#include <string_view>

namespace corvane {

namespace {

/// Numbers on the stack; the language's own limit.
constexpr std::size_t deepestStack = 100;

/// Braces within one another; reading them recurses.
constexpr int deepestBraces = 32;

/// Numbers and truth values, which are 0 and 1.
class NumberStack {
public:
    double pop() { return count_ > 0 ? numbers_[--count_] : 0.0; }
    bool isTruth() const { return count_ > 0 && truths_[count_ - 1]; }
    std::int64_t popWhole() {
        const double value = pop();
        constexpr double bound = 2147483647.0;
        return value >= -bound && value <= bound ? static_cast<std::int64_t>(value) : 0;
    }
    void push(double value) {
        if (count_ < deepestStack) {
            truths_[count_] = false;
            numbers_[count_++] = value;
        }
    }
    void pushTruth(bool value) {
        push(value ? 1 : 0);
        truths_[count_ - 1] = true;
    }
    void pushWhole(std::int64_t value) { push(static_cast<double>(value)); }
    void copy(std::int64_t count) {
        const std::size_t from = count_;
        if (count > 0 && static_cast<std::size_t>(count) <= from) {
            for (std::size_t i = from - static_cast<std::size_t>(count); i < from; ++i) {
                pushAgain(i);
            }
        }
    }
    void index(std::int64_t depth) {
        if (depth >= 0 && static_cast<std::size_t>(depth) < count_) {
            pushAgain(count_ - 1 - static_cast<std::size_t>(depth));
        } else {
            push(0);
        }
    }
    void roll(std::int64_t count, std::int64_t by) {
        if (count < 2 || static_cast<std::size_t>(count) > count_) {
            return;
        }
        const std::int64_t turns = ((by % count) + count) % count;
        const auto turn = [&](auto& values) {
            const auto end = values.begin() + static_cast<std::ptrdiff_t>(count_);
            std::rotate(end - count, end - turns, end);
        };
        turn(numbers_);
        turn(truths_);
    }

private:
    void pushAgain(std::size_t place) {
        const bool isTruth = truths_[place];
        push(numbers_[place]);
        truths_[count_ - 1] = isTruth;
    }

    std::array<double, deepestStack> numbers_{};
    std::array<bool, deepestStack> truths_{};
    std::size_t count_ = 0;
};

using Word = void (*)(NumberStack&);

constexpr double degrees = 180 / std::numbers::pi;

template <class Compute>
void unary(NumberStack& stack, Compute compute) {
    stack.push(compute(stack.pop()));
}

template <class Compute>
void binary(NumberStack& stack, Compute compute) {
    const double b = stack.pop();
    const double a = stack.pop();
    stack.push(static_cast<double>(compute(a, b)));
}

template <class Compute>
void whole(NumberStack& stack, Compute compute) {
    const std::int64_t b = stack.popWhole();
    const std::int64_t a = stack.popWhole();
    stack.pushWhole(compute(a, b));
}

std::int64_t shifted(std::int64_t value, std::int64_t by) {
    const auto bits = static_cast<std::uint32_t>(value);
    if (by <= -32 || by >= 32) {
        return 0;
    }
    return static_cast<std::int32_t>(by < 0 ? bits >> -by : bits << by);
}

/// Of two truth values a truth value, else a number.
template <class Compute>
void logical(NumberStack& stack, Compute compute) {
    const bool second = stack.isTruth();
    const std::int64_t b = stack.popWhole();
    const bool first = stack.isTruth();
    const std::int64_t result = compute(stack.popWhole(), b);
    if (first && second) {
        stack.pushTruth(result != 0);
    } else {
        stack.pushWhole(result);
    }
}

template <class Compute>
void compared(NumberStack& stack, Compute compute) {
    const double b = stack.pop();
    const double a = stack.pop();
    stack.pushTruth(compute(a, b));
}

void negate(NumberStack& stack) {
    const bool isTruth = stack.isTruth();
    const std::int64_t value = stack.popWhole();
    if (isTruth) {
        stack.pushTruth(value == 0);
    } else {
        stack.pushWhole(~value);
    }
}

/// Steps that words take which call the mathematical library, or move many numbers.
constexpr std::int64_t longWord = 20;

struct Named {
    std::string_view name;
    Word word;
    std::int64_t cost = 1;
};

constexpr std::array words{
    Named{"abs", [](NumberStack& s) { unary(s, [](double a) { return std::abs(a); }); }},
    Named{"add", [](NumberStack& s) { binary(s, [](double a, double b) { return a + b; }); }},
    Named{"and", [](NumberStack& s) { logical(s, [](auto a, auto b) { return a & b; }); }},
    Named{"atan",
          [](NumberStack& s) {
              binary(s, [](double a, double b) {
                  const double angle = std::atan2(a, b) * degrees;
                  return angle < 0 ? angle + 360 : angle;
              });
          },
          longWord},
    Named{"bitshift", [](NumberStack& s) { whole(s, shifted); }},
    Named{"ceiling", [](NumberStack& s) { unary(s, [](double a) { return std::ceil(a); }); }},
    Named{"copy", [](NumberStack& s) { s.copy(s.popWhole()); }, longWord},
    Named{"cos", [](NumberStack& s) { unary(s, [](double a) { return std::cos(a / degrees); }); },
          longWord},
    Named{"cvi", [](NumberStack& s) { unary(s, [](double a) { return std::trunc(a); }); }},
    Named{"cvr", [](NumberStack&) {}},
    Named{"div",
          [](NumberStack& s) { binary(s, [](double a, double b) { return b == 0 ? 0 : a / b; }); }},
    Named{"dup", [](NumberStack& s) { s.copy(1); }},
    Named{"eq", [](NumberStack& s) { compared(s, [](double a, double b) { return a == b; }); }},
    Named{"exch", [](NumberStack& s) { s.roll(2, 1); }},
    Named{"exp",
          [](NumberStack& s) { binary(s, [](double a, double b) { return std::pow(a, b); }); },
          longWord},
    Named{"false", [](NumberStack& s) { s.pushTruth(false); }},
    Named{"floor", [](NumberStack& s) { unary(s, [](double a) { return std::floor(a); }); }},
    Named{"ge", [](NumberStack& s) { compared(s, [](double a, double b) { return a >= b; }); }},
    Named{"gt", [](NumberStack& s) { compared(s, [](double a, double b) { return a > b; }); }},
    Named{"idiv",
          [](NumberStack& s) { whole(s, [](auto a, auto b) { return b == 0 ? 0 : a / b; }); }},
    Named{"index", [](NumberStack& s) { s.index(s.popWhole()); }},
    Named{"le", [](NumberStack& s) { compared(s, [](double a, double b) { return a <= b; }); }},
    Named{"ln", [](NumberStack& s) { unary(s, [](double a) { return std::log(a); }); }, longWord},
    Named{"log", [](NumberStack& s) { unary(s, [](double a) { return std::log10(a); }); },
          longWord},
    Named{"lt", [](NumberStack& s) { compared(s, [](double a, double b) { return a < b; }); }},
    Named{"mod",
          [](NumberStack& s) { whole(s, [](auto a, auto b) { return b == 0 ? 0 : a % b; }); }},
    Named{"mul", [](NumberStack& s) { binary(s, [](double a, double b) { return a * b; }); }},
    Named{"ne", [](NumberStack& s) { compared(s, [](double a, double b) { return a != b; }); }},
    Named{"neg", [](NumberStack& s) { unary(s, [](double a) { return -a; }); }},
    Named{"not", negate},
    Named{"or", [](NumberStack& s) { logical(s, [](auto a, auto b) { return a | b; }); }},
    Named{"pop", [](NumberStack& s) { s.pop(); }},
    Named{"roll",
          [](NumberStack& s) {
              const std::int64_t by = s.popWhole();
              s.roll(s.popWhole(), by);
          },
          longWord},
    Named{"round", [](NumberStack& s) { unary(s, [](double a) { return std::floor(a + .5); }); }},
    Named{"sin", [](NumberStack& s) { unary(s, [](double a) { return std::sin(a / degrees); }); },
          longWord},
    Named{"sqrt",
          [](NumberStack& s) { unary(s, [](double a) { return std::sqrt(std::max(a, 0.0)); }); }},
    Named{"sub", [](NumberStack& s) { binary(s, [](double a, double b) { return a - b; }); }},
    Named{"true", [](NumberStack& s) { s.pushTruth(true); }},
    Named{"truncate", [](NumberStack& s) { unary(s, [](double a) { return std::trunc(a); }); }},
    Named{"xor", [](NumberStack& s) { logical(s, [](auto a, auto b) { return a ^ b; }); }},
};
static_assert(std::ranges::is_sorted(words, {}, &Named::name));

/// A word, a number, or a jump; jumps go forward only, so that every program ends.
struct Step {
    enum class Kind : std::uint8_t { number, word, jump, jumpUnless };
    Kind kind = Kind::number;
    double number = 0;
    Word word = nullptr;
    std::size_t target = 0;
    std::int64_t cost = 1;
};

class Compiler {
public:
    explicit Compiler(std::string_view program) : rest_(program) {}

    /// Nothing where it is no program.
    std::optional<std::vector<Step>> program() {
        if (token() != "{" || !body(0)) {
            return std::nullopt;
        }
        return std::move(steps_);
    }

private:
    void skipBlanks() {
        while (!rest_.empty() && (isSpace(rest_.front()) || rest_.front() == '%')) {
            const bool isComment = rest_.front() == '%';
            const std::size_t end = isComment ? rest_.find_first_of("\r\n") : 1;
            rest_.remove_prefix(std::min(end, rest_.size()));
        }
    }

    /// A brace or a word; empty at the end.
    std::string_view token() {
        skipBlanks();
        const auto end = std::ranges::find_if_not(rest_, isRegular);
        const auto length = static_cast<std::size_t>(end - rest_.begin());
        const std::string_view text = rest_.substr(0, std::max<std::size_t>(length, 1));
        rest_.remove_prefix(text.size());
        return text;
    }

    /// A jump whose target is not known yet.
    std::size_t jump(Step::Kind kind) {
        steps_.push_back({.kind = kind});
        return steps_.size() - 1;
    }
    void land(std::size_t jump) { steps_[jump].target = steps_.size(); }

    bool simple(std::string_view text) {
        const auto* const named = std::ranges::lower_bound(words, text, {}, &Named::name);
        if (named != words.end() && named->name == text) {
            steps_.push_back({.kind = Step::Kind::word, .word = named->word, .cost = named->cost});
            return true;
        }
        if (text.starts_with('+')) {
            text.remove_prefix(1);
        }
        double number = 0;
        const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
        if (read.ec != std::errc() || read.ptr != text.data() + text.size()) {
            return false;
        }
        steps_.push_back({.kind = Step::Kind::number, .number = number});
        return true;
    }

    /// `{ ... } if`, or `{ ... } { ... } ifelse`, behind the first brace.
    bool branch(int depth) {
        const std::size_t past = jump(Step::Kind::jumpUnless);
        if (!body(depth + 1)) {
            return false;
        }
        std::string_view next = token();
        if (next != "{") {
            land(past);
            return next == "if";
        }
        const std::size_t end = jump(Step::Kind::jump);
        land(past);
        if (!body(depth + 1)) {
            return false;
        }
        land(end);
        next = token();
        return next == "ifelse";
    }

    /// Up to its closing brace.
    bool body(int depth) {
        while (depth <= deepestBraces && steps_.size() < budget::functionOperators) {
            const std::string_view text = token();
            if (text == "}") {
                return true;
            }
            if (text == "{" ? !branch(depth) : !simple(text)) {
                return false;
            }
        }
        return false;
    }

    std::string_view rest_;
    std::vector<Step> steps_;
};

class CalculatorFunction final : public Function {
public:
    CalculatorFunction(std::vector<Interval> domain, const std::vector<Interval>& range,
                       std::vector<Step> steps)
        : Function(std::move(domain), range, range.size()), steps_(std::move(steps)) {
        for (const Step& step : steps_) {
            cost_ += step.cost;
        }
    }

    std::int64_t cost() const override { return cost_; }

private:
    void compute(std::span<const double> in, std::span<double> out) const override {
        NumberStack stack;
        for (const double value : in) {
            stack.push(value);
        }
        for (std::size_t at = 0; at < steps_.size(); ++at) {
            const Step& step = steps_[at];
            switch (step.kind) {
            case Step::Kind::number:
                stack.push(step.number);
                break;
            case Step::Kind::word:
                step.word(stack);
                break;
            case Step::Kind::jumpUnless:
                if (stack.pop() != 0) {
                    break;
                }
                [[fallthrough]];
            case Step::Kind::jump:
                at = step.target - 1;
                break;
            }
        }
        for (std::size_t i = out.size(); i-- > 0;) {
            out[i] = stack.pop();
        }
    }

    std::vector<Step> steps_;
    std::int64_t cost_ = 1;
};

} // namespace

FunctionPointer readCalculator(std::string_view program, std::vector<Function::Interval> domain,
                               const std::vector<Function::Interval>& range) {
    std::optional<std::vector<Step>> steps = Compiler(program).program();
    if (!steps) {
        return nullptr;
    }
    return std::make_shared<CalculatorFunction>(std::move(domain), range, std::move(*steps));
}

} // namespace corvane
