#include "reader/font/cmap/read_cmap.h"

#include "filters/memory_filter.h"
#include "filters/token/token.h"
#include "reader/font/characters.h"

#include <algorithm>
#include <string>
#include <utility>

namespace corvane {

namespace {

/// Characters of one code: the PDF Reference permits 512 bytes.
constexpr std::size_t longestCodeText = 256;

enum class Section {
    none,
    spaces,
    cidChars,
    cidRanges,
    notdefChars,
    notdefRanges,
    texts,
    textRanges
};

constexpr std::pair<std::string_view, Section> sections[] = {
    {"begincodespacerange", Section::spaces},    {"begincidchar", Section::cidChars},
    {"begincidrange", Section::cidRanges},       {"beginnotdefchar", Section::notdefChars},
    {"beginnotdefrange", Section::notdefRanges}, {"beginbfchar", Section::texts},
    {"beginbfrange", Section::textRanges},
};

Section sectionOf(std::string_view keyword) {
    const auto* const found =
        std::ranges::find(sections, keyword, &std::pair<std::string_view, Section>::first);
    return found == std::end(sections) ? Section::none : found->second;
}

/// Operands of one mapping.
std::size_t operandsOf(Section section) {
    const bool isRange = section == Section::cidRanges || section == Section::notdefRanges ||
                         section == Section::textRanges;
    return isRange ? 3 : 2;
}

struct Operand {
    enum class Kind { number, hex, name, other };
    Kind kind = Kind::other;
    std::int32_t number = 0;
    std::string bytes; ///< of a hexadecimal string or a name
};

std::u32string textOf(const Operand& operand) {
    if (operand.kind != Operand::Kind::hex || operand.bytes.size() > 2 * longestCodeText) {
        return {};
    }
    if (operand.bytes.size() == 1) {
        return {static_cast<unsigned char>(operand.bytes[0])};
    }
    return fromUtf16(std::as_bytes(std::span(operand.bytes)));
}

std::optional<StringCode> codeOf(const Operand& operand) {
    if (operand.kind != Operand::Kind::hex || operand.bytes.empty() ||
        operand.bytes.size() > longestCode) {
        return std::nullopt;
    }
    StringCode code{.code = 0, .length = static_cast<std::int32_t>(operand.bytes.size())};
    for (const char byte : operand.bytes) {
        code.code = code.code << 8 | static_cast<unsigned char>(byte);
    }
    return code;
}

/// The bytes that hexadecimal digits say; an odd last digit is followed by 0.
std::string bytesOfDigits(std::string_view digits) {
    const auto valueOf = [](char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; };
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const int low = i + 1 < digits.size() ? valueOf(digits[i + 1]) : 0;
        bytes.push_back(static_cast<char>(valueOf(digits[i]) << 4 | low));
    }
    return bytes;
}

class CMapReader {
public:
    CMapReader(TokenFilter& token, CMap& map, const CMapFinder& find)
        : token_(token), map_(map), find_(find) {}

    void read() {
        for (TokenType type = token_.readToken(); type != TokenType::end;
             type = token_.readToken()) {
            if (type == TokenType::keyword) {
                obey(std::string(token_.bytes()));
            } else if (type == TokenType::arrayOpen) {
                readArray();
            } else {
                take(readOperand(type));
            }
        }
    }

private:
    Operand readOperand(TokenType type) {
        switch (type) {
        case TokenType::integer:
        case TokenType::fixed:
            return {.kind = Operand::Kind::number, .number = token_.number().integer, .bytes = {}};
        case TokenType::literal:
            return {.kind = Operand::Kind::name, .number = 0, .bytes = std::string(token_.bytes())};
        case TokenType::hexOpen: {
            std::string digits;
            while (token_.readToken() == TokenType::text) {
                digits += token_.bytes();
            }
            return {.kind = Operand::Kind::hex, .number = 0, .bytes = bytesOfDigits(digits)};
        }
        default:
            return {};
        }
    }

    void obey(const std::string& keyword) {
        if (keyword == "usecmap" && !operands_.empty() && map_.base() == nullptr) {
            map_.setBase(find_(operands_.back().bytes));
        } else if (keyword == "def" && operands_.size() >= 2 &&
                   operands_[operands_.size() - 2].bytes == "WMode") {
            map_.setVertical(operands_.back().number == 1);
        }
        section_ = sectionOf(keyword);
        operands_.clear();
    }

    /// Texts of a range of codes, one for each; elsewhere arrays say nothing.
    void readArray() {
        std::optional<StringCode> code;
        std::uint32_t last = 0;
        if (section_ == Section::textRanges && operands_.size() == 2) {
            code = codeOf(operands_[0]);
            last = codeOf(operands_[1]).value_or(StringCode{}).code;
        }
        for (TokenType type = token_.readToken();
             type != TokenType::arrayClose && type != TokenType::end; type = token_.readToken()) {
            if (type == TokenType::keyword) {
                obey(std::string(token_.bytes())); // the array was not closed
                return;
            }
            const Operand operand = readOperand(type);
            if (code && code->code <= last) {
                map_.addText(code->code, code->code, textOf(operand));
                ++code->code;
            }
        }
        operands_.clear();
    }

    void take(Operand operand) {
        if (section_ == Section::none) {
            // Only the last two are ever asked for.
            if (operands_.size() == 2) {
                operands_.erase(operands_.begin());
            }
            operands_.push_back(std::move(operand));
            return;
        }
        operands_.push_back(std::move(operand));
        if (operands_.size() == operandsOf(section_)) {
            map(std::exchange(operands_, {}));
        }
    }

    /// One mapping of the section.
    void map(const std::vector<Operand>& operands) {
        const std::optional<StringCode> first = codeOf(operands[0]);
        const std::optional<StringCode> last =
            operands.size() == 3 || section_ == Section::spaces ? codeOf(operands[1]) : first;
        if (!first || !last) {
            return;
        }
        const Operand& value = operands.back();
        NumberRange range{.first = first->code,
                          .last = last->code,
                          .value = static_cast<std::uint32_t>(value.number)};
        switch (section_) {
        case Section::spaces:
            if (first->length == last->length) {
                map_.addSpace({first->length, first->code, last->code});
            }
            break;
        case Section::cidChars:
        case Section::cidRanges:
            map_.addCids(first->length, range);
            break;
        case Section::notdefChars:
        case Section::notdefRanges:
            range.isConstant = true;
            map_.addNotdefs(first->length, range);
            break;
        case Section::texts:
        case Section::textRanges:
            map_.addText(first->code, last->code, textOf(value));
            break;
        case Section::none:
            break;
        }
    }

    TokenFilter& token_;
    CMap& map_;
    const CMapFinder& find_;
    Section section_ = Section::none;
    std::vector<Operand> operands_;
};

} // namespace

std::shared_ptr<CMap> readCMap(std::span<const std::byte> file, std::shared_ptr<const CMap> base,
                               const CMapFinder& find) {
    auto map = std::make_shared<CMap>();
    if (base != nullptr) {
        map->setVertical(base->isVertical());
        map->setBase(std::move(base));
    }
    // A token too long ends the reading: what was read up to there counts.
    attempted([&] {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(file));
        auto owner = setupToken();
        TokenFilter& token = *owner;
        chain.link(std::move(owner));
        CMapReader(token, *map, find).read();
    });
    map->finish();
    return map;
}

} // namespace corvane
