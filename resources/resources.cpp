#include "resources/resources.h"

#include "host/parameters.h"

#include <array>
#include <vector>

namespace corvane {

namespace {

constexpr std::uint32_t textType = fourCharacters("TEXT");
constexpr std::uint32_t rowsType = fourCharacters("BYTE");
constexpr std::uint32_t namesType = fourCharacters("NAME");
constexpr std::uint32_t listType = fourCharacters("STR#");

constexpr std::array<std::string_view, 1> nameEntries = {"Image ^0.epsf"};
constexpr std::array<std::string_view, 1> aboutEntries = {
    "Corvane (PDF): opens a page of a PDF file as artwork and saves it back into the file."};

/// A string list in the resource's own form: a big-endian count, then length-prefixed strings.
std::vector<std::byte> stringList(std::span<const std::string_view> entries) {
    std::vector<std::byte> list{static_cast<std::byte>(entries.size() >> 8),
                                static_cast<std::byte>(entries.size() & 0xFF)};
    for (const std::string_view entry : entries) {
        const std::string_view fitting = entry.substr(0, 255);
        list.push_back(static_cast<std::byte>(fitting.size()));
        const auto bytes = std::as_bytes(std::span(fitting));
        list.insert(list.end(), bytes.begin(), bytes.end());
    }
    return list;
}

struct Lists {
    std::vector<std::byte> exceptions = stringList(exceptionSentences());
    std::vector<std::byte> reasons = stringList(reasonSentences());
    std::vector<std::byte> readWarnings = stringList(readWarningSentences());
    std::vector<std::byte> writeWarnings = stringList(writeWarningSentences());
    std::vector<std::byte> mends = stringList(mendPhrases());
    std::vector<std::byte> names = stringList(nameEntries);
    std::vector<std::byte> about = stringList(aboutEntries);
};

} // namespace

std::span<const StaticResource> pluginResources() {
    static const Lists lists;
    static const std::array resources = {
        StaticResource{textType, templateText, "", std::as_bytes(std::span(templateFile()))},
        StaticResource{textType, epsfImageText, "",
                       std::as_bytes(std::span(epsfImageProcedures()))},
        StaticResource{textType, epsfMaskText, "", std::as_bytes(std::span(epsfMaskProcedures()))},
        StaticResource{rowsType, encodingTables, "", encodingRows()},
        StaticResource{namesType, encodingTables, "", glyphNames()},
        StaticResource{listType, exceptionTexts, "", lists.exceptions},
        StaticResource{listType, reasonTexts, "", lists.reasons},
        StaticResource{listType, readWarningTexts, "", lists.readWarnings},
        StaticResource{listType, writeWarningTexts, "", lists.writeWarnings},
        StaticResource{listType, mendTexts, "", lists.mends},
        StaticResource{listType, nameTexts, "", lists.names},
        StaticResource{listType, aboutTexts, "", lists.about},
    };
    return resources;
}

} // namespace corvane
