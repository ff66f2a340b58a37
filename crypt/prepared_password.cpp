#include "crypt/prepared_password.h"

#include "crypt/utf8.h"
#include "runtime/exception.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <uninorm.h>
#include <utility>
#include <vector>

namespace corvane {

namespace {

struct CharacterRange {
    char32_t first;
    char32_t last;
};

/// RFC 3454, table C.1.2.
constexpr std::array blanks = {
    CharacterRange{0x00A0, 0x00A0}, CharacterRange{0x1680, 0x1680}, CharacterRange{0x2000, 0x200B},
    CharacterRange{0x202F, 0x202F}, CharacterRange{0x205F, 0x205F}, CharacterRange{0x3000, 0x3000},
};

/// RFC 3454, table B.1, less what is a blank.
constexpr std::array unseen = {
    CharacterRange{0x00AD, 0x00AD}, CharacterRange{0x034F, 0x034F}, CharacterRange{0x1806, 0x1806},
    CharacterRange{0x180B, 0x180D}, CharacterRange{0x200C, 0x200D}, CharacterRange{0x2060, 0x2060},
    CharacterRange{0xFE00, 0xFE0F}, CharacterRange{0xFEFF, 0xFEFF},
};

template <std::size_t count>
bool isIn(const std::array<CharacterRange, count>& ranges, char32_t character) {
    return std::ranges::any_of(ranges, [&](const CharacterRange& range) {
        return character >= range.first && character <= range.last;
    });
}

/// Characters that one becomes in form KC at most (Unicode Standard Annex 15).
constexpr std::size_t mostCharacters = 18;

/// Characters in memory that is wiped. Never more than there is room for at first, so that no copy
/// is left behind.
class SecretCharacters {
public:
    explicit SecretCharacters(std::size_t room) : room_(room) {}
    SecretCharacters(SecretCharacters&&) = default;
    SecretCharacters& operator=(SecretCharacters&&) = delete;
    ~SecretCharacters() {
        if (!room_.empty()) {
            explicit_bzero(room_.data(), room_.size() * sizeof(std::uint32_t));
        }
    }

    std::span<std::uint32_t> room() { return room_; }
    std::span<const std::uint32_t> get() const { return std::span(room_).first(count_); }
    void add(char32_t character) { room_[count_++] = character; }
    void setCount(std::size_t count) { count_ = count; }

private:
    std::vector<std::uint32_t> room_;
    std::size_t count_ = 0;
};

std::optional<SecretCharacters> mapped(Octets text) {
    SecretCharacters characters(text.size());
    while (!text.empty()) {
        const std::optional<char32_t> character = nextCharacter(text);
        if (!character) {
            return std::nullopt;
        }
        if (isIn(blanks, *character)) {
            characters.add(U' ');
        } else if (!isIn(unseen, *character)) {
            characters.add(*character);
        }
    }
    return characters;
}

/// In form KC. The library works in the room that it is given, as long as that is enough.
SecretCharacters normalised(const SecretCharacters& characters) {
    const std::span<const std::uint32_t> source = characters.get();
    SecretCharacters result(source.size() * mostCharacters);
    std::size_t count = result.room().size();
    if (u32_normalize(UNINORM_NFKC, source.data(), source.size(), result.room().data(), &count) !=
        result.room().data()) {
        failException(Exception::memory);
    }
    result.setCount(count);
    return result;
}

} // namespace

std::optional<Secret> preparedPassword(Octets text) {
    const std::optional<SecretCharacters> characters = mapped(text);
    if (!characters) {
        return std::nullopt;
    }
    if (characters->get().empty()) {
        return Secret();
    }
    const SecretCharacters result = normalised(*characters);
    Secret bytes(result.get().size() * longestCharacter);
    std::size_t size = 0;
    for (const std::uint32_t character : result.get()) {
        size += putCharacter(character, bytes.bytes().subspan(size));
    }
    return Secret(std::as_const(bytes).bytes().first(size));
}

} // namespace corvane
