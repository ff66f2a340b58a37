#include "reader/paint/calculator_function.h"

#include "filters/character.h"
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

class NumberStack {
public:
    double pop() { return count_ > 0 ? numbers_[--count_] : 0.0; }
    std::int64_t popWhole() {
        const double value = pop();
        constexpr double bound = 2147483647.0;
        return value >= -bound && value <= bound ? static_cast<std::int64_t>(value) : 0;
    }
    void push(double value) {
        if (count_ < deepestStack) {
            numbers_[count_++] = value;
        }
    }
    void pushWhole(std::int64_t value) { push(static_cast<double>(value)); }
    void copy(std::int64_t count) {
        const std::size_t from = count_;
        if (count > 0 && static_cast<std::size_t>(count) <= from) {
            for (std::size_t i = from - static_cast<std::size_t>(count); i < from; ++i) {
                push(numbers_[i]);
            }
        }
    }
    void index(std::int64_t depth) {
        const bool isThere = depth >= 0 && static_cast<std::size_t>(depth) < count_;
        push(isThere ? numbers_[count_ - 1 - static_cast<std::size_t>(depth)] : 0.0);
    }
    void roll(std::int64_t count, std::int64_t by) {
        if (count < 2 || static_cast<std::size_t>(count) > count_) {
            return;
        }
        const auto end = numbers_.begin() + static_cast<std::ptrdiff_t>(count_);
        const std::int64_t turns = ((by % count) + count) % count;
        std::rotate(end - count, end - turns, end);
    }

private:
    std::array<double, deepestStack> numbers_{};
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

struct Named {
    std::string_view name;
    Word word;
};

constexpr std::array words{
    Named{"abs", [](NumberStack& s) { unary(s, [](double a) { return std::abs(a); }); }},
    Named{"add", [](NumberStack& s) { binary(s, [](double a, double b) { return a + b; }); }},
    Named{"and", [](NumberStack& s) { whole(s, [](auto a, auto b) { return a & b; }); }},
    Named{"atan",
          [](NumberStack& s) {
              binary(s, [](double a, double b) {
                  const double angle = std::atan2(a, b) * degrees;
                  return angle < 0 ? angle + 360 : angle;
              });
          }},
    Named{"bitshift", [](NumberStack& s) { whole(s, shifted); }},
    Named{"ceiling", [](NumberStack& s) { unary(s, [](double a) { return std::ceil(a); }); }},
    Named{"copy", [](NumberStack& s) { s.copy(s.popWhole()); }},
    Named{"cos", [](NumberStack& s) { unary(s, [](double a) { return std::cos(a / degrees); }); }},
    Named{"cvi", [](NumberStack& s) { unary(s, [](double a) { return std::trunc(a); }); }},
    Named{"cvr", [](NumberStack&) {}},
    Named{"div",
          [](NumberStack& s) { binary(s, [](double a, double b) { return b == 0 ? 0 : a / b; }); }},
    Named{"dup", [](NumberStack& s) { s.copy(1); }},
    Named{"eq", [](NumberStack& s) { binary(s, [](double a, double b) { return a == b; }); }},
    Named{"exch", [](NumberStack& s) { s.roll(2, 1); }},
    Named{"exp",
          [](NumberStack& s) { binary(s, [](double a, double b) { return std::pow(a, b); }); }},
    Named{"false", [](NumberStack& s) { s.push(0); }},
    Named{"floor", [](NumberStack& s) { unary(s, [](double a) { return std::floor(a); }); }},
    Named{"ge", [](NumberStack& s) { binary(s, [](double a, double b) { return a >= b; }); }},
    Named{"gt", [](NumberStack& s) { binary(s, [](double a, double b) { return a > b; }); }},
    Named{"idiv",
          [](NumberStack& s) { whole(s, [](auto a, auto b) { return b == 0 ? 0 : a / b; }); }},
    Named{"index", [](NumberStack& s) { s.index(s.popWhole()); }},
    Named{"le", [](NumberStack& s) { binary(s, [](double a, double b) { return a <= b; }); }},
    Named{"ln", [](NumberStack& s) { unary(s, [](double a) { return std::log(a); }); }},
    Named{"log", [](NumberStack& s) { unary(s, [](double a) { return std::log10(a); }); }},
    Named{"lt", [](NumberStack& s) { binary(s, [](double a, double b) { return a < b; }); }},
    Named{"mod",
          [](NumberStack& s) { whole(s, [](auto a, auto b) { return b == 0 ? 0 : a % b; }); }},
    Named{"mul", [](NumberStack& s) { binary(s, [](double a, double b) { return a * b; }); }},
    Named{"ne", [](NumberStack& s) { binary(s, [](double a, double b) { return a != b; }); }},
    Named{"neg", [](NumberStack& s) { unary(s, [](double a) { return -a; }); }},
    // Of truth values only: 0 and 1.
    Named{"not", [](NumberStack& s) { unary(s, [](double a) { return a == 0 ? 1.0 : 0.0; }); }},
    Named{"or", [](NumberStack& s) { whole(s, [](auto a, auto b) { return a | b; }); }},
    Named{"pop", [](NumberStack& s) { s.pop(); }},
    Named{"roll",
          [](NumberStack& s) {
              const std::int64_t by = s.popWhole();
              s.roll(s.popWhole(), by);
          }},
    Named{"round", [](NumberStack& s) { unary(s, [](double a) { return std::floor(a + .5); }); }},
    Named{"sin", [](NumberStack& s) { unary(s, [](double a) { return std::sin(a / degrees); }); }},
    Named{"sqrt",
          [](NumberStack& s) { unary(s, [](double a) { return std::sqrt(std::max(a, 0.0)); }); }},
    Named{"sub", [](NumberStack& s) { binary(s, [](double a, double b) { return a - b; }); }},
    Named{"true", [](NumberStack& s) { s.push(1); }},
    Named{"truncate", [](NumberStack& s) { unary(s, [](double a) { return std::trunc(a); }); }},
    Named{"xor", [](NumberStack& s) { whole(s, [](auto a, auto b) { return a ^ b; }); }},
};
static_assert(std::ranges::is_sorted(words, {}, &Named::name));

/// A word, a number, or a jump; jumps go forward only, so that every program ends.
struct Step {
    enum class Kind : std::uint8_t { number, word, jump, jumpUnless };
    Kind kind = Kind::number;
    double number = 0;
    Word word = nullptr;
    std::size_t target = 0;
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
            steps_.push_back({.kind = Step::Kind::word, .word = named->word});
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
        : Function(std::move(domain), range, range.size()), steps_(std::move(steps)) {}

    std::int64_t cost() const override { return static_cast<std::int64_t>(steps_.size()) + 1; }

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
