#include "app/artwork/text/fonts.h"

#include "app/artwork/error.h"
#include "app/artwork/text/characters.h"

#include <utility>

namespace corvane {

namespace {

constexpr std::size_t mostFonts = std::size_t{1} << 20;

bool isName(std::string_view name) {
    return name.size() <= FontTable::longestFamily && isPlainText(name);
}

void check(const FontFacts& facts) {
    if (facts.family.empty() || !isName(facts.family) || !isName(facts.realFamily) ||
        facts.weight < 100 || facts.weight > 900 || facts.generic > GenericFamily::monospace ||
        (facts.isPageFont && FontTable::endsInNumber(facts.family))) {
        throw ArtworkError("the font has a value without meaning");
    }
}

std::uint32_t hashOf(const FontFacts& facts) {
    Hash hash;
    hash.add(facts.family);
    hash.add(facts.weight, facts.italic);
    return hash.value();
}

} // namespace

bool FontTable::endsInNumber(std::string_view family) {
    const std::size_t last = family.find_last_not_of("0123456789");
    return last != std::string_view::npos && last + 1 < family.size() && family[last] == ' ';
}

Font FontTable::add(const FontFacts& facts) {
    check(facts);
    const std::uint32_t hash = hashOf(facts);
    const std::uint32_t known = index_.find(hash, [&](std::uint32_t number) {
        const Record& record = records_[number];
        return record.family == facts.family && record.facts.weight == facts.weight &&
               record.facts.italic == facts.italic;
    });
    if (known != NumberIndex::none) {
        return static_cast<Font>(known + 1);
    }
    if (records_.size() == mostFonts) {
        throw ArtworkError("there are more fonts than can be counted");
    }
    index_.reserve();
    Record record{std::string(facts.family), std::string(facts.realFamily), facts, {}};
    record.facts.family = record.facts.realFamily = {};
    const auto bytes = static_cast<std::int64_t>(sizeof(Record) + record.family.capacity() +
                                                 record.realFamily.capacity());
    budget_->charge(bytes);
    try {
        records_.push_back(std::move(record));
    } catch (...) {
        budget_->discharge(bytes);
        throw;
    }
    index_.add(hash, static_cast<std::uint32_t>(records_.size() - 1));
    return static_cast<Font>(records_.size());
}

const FontTable::Record& FontTable::at(Font font) const {
    const auto number = static_cast<std::uint32_t>(font);
    if (number == 0 || number > records_.size()) {
        throw ArtworkError("there is no such font");
    }
    return records_[number - 1];
}

void FontTable::checkFace(Font font, std::int32_t face) const {
    const bool known = face == 0 || (face > 0 && face < mostFaces && at(font).facts.isPageFont);
    if (!known) {
        throw ArtworkError("the font has no such face");
    }
}

void FontTable::setFile(Font font, std::int32_t face, std::span<const std::byte> file) {
    if (!at(font).facts.isPageFont) {
        throw ArtworkError("only fonts of a page have files");
    }
    checkFace(font, face);
    auto& faces = records_[static_cast<std::uint32_t>(font) - 1].faces;
    const auto number = static_cast<std::size_t>(face);
    const std::size_t added = number < faces.size() ? 0 : number + 1 - faces.size();
    const auto bytes =
        static_cast<std::int64_t>(file.size() + added * sizeof(std::vector<std::byte>));
    budget_->charge(bytes);
    try {
        std::vector<std::byte> copy(file.begin(), file.end());
        faces.resize(faces.size() + added);
        budget_->discharge(static_cast<std::int64_t>(faces[number].size()));
        faces[number] = std::move(copy);
    } catch (...) {
        budget_->discharge(bytes);
        throw;
    }
}

FontFacts FontTable::facts(Font font) const {
    const Record& record = at(font);
    FontFacts facts = record.facts;
    facts.family = record.family;
    facts.realFamily = record.realFamily;
    return facts;
}

std::int32_t FontTable::faceCount(Font font) const {
    return static_cast<std::int32_t>(at(font).faces.size());
}

std::span<const std::byte> FontTable::file(Font font, std::int32_t face) const {
    const auto& faces = at(font).faces;
    const bool known = face >= 0 && face < std::ssize(faces);
    return known ? std::span<const std::byte>(faces[static_cast<std::size_t>(face)])
                 : std::span<const std::byte>();
}

} // namespace corvane
