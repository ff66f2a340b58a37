// The fonts of a document, each kept once, with the files of their faces.
#pragma once

#include "app/artwork/budget.h"
#include "app/artwork/storage/number_index.h"
#include "host/text.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Handles are numbers from 1. Fonts and their strings stay where they are for the document's life.
class FontTable {
public:
    /// Faces of one font. Page fonts have a few: one for each further glyph of a character.
    static constexpr std::int32_t mostFaces = 4096;

    /// Bytes of a family: names are shown to people and written into files.
    static constexpr std::size_t longestFamily = 1024;

    explicit FontTable(ArtworkBudget& budget) : budget_(&budget), index_(budget) {}
    FontTable(const FontTable&) = delete;
    FontTable& operator=(const FontTable&) = delete;

    /// Families of page fonts do not end in a blank and digits, which tell faces apart: "family 2".
    static bool endsInNumber(std::string_view family);

    /// The font of that family, weight and slant; what else the facts say counts where it is new.
    /// Throws `ArtworkError` where a value has no meaning, and past the budget.
    Font add(const FontFacts&);
    /// Of a page font; replaces the file that the face has.
    void setFile(Font, std::int32_t face, std::span<const std::byte> file);

    std::size_t size() const { return records_.size(); }
    FontFacts facts(Font) const;
    /// As many as the highest face with a file needs.
    std::int32_t faceCount(Font) const;
    /// Empty where the face has none.
    std::span<const std::byte> file(Font, std::int32_t face) const;
    /// Throws `ArtworkError` where letters cannot be of that face.
    void checkFace(Font, std::int32_t face) const;

private:
    struct Record {
        std::string family;
        std::string realFamily;
        FontFacts facts; ///< without its strings
        std::vector<std::vector<std::byte>> faces;
    };

    const Record& at(Font) const;

    ArtworkBudget* budget_;
    std::deque<Record> records_;
    NumberIndex index_;
};

} // namespace corvane
