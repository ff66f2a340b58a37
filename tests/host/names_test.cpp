// Types of the tree by their names. Programs link several folders: two types of one name would
// share the functions that compilers make for them, such as destructors, and be taken for one
// another.
#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>

namespace corvane {
namespace {

using Homes = std::map<std::string, std::filesystem::path>;

/// Takes in the types that the header defines in its namespace: those that are not indented.
void addTypes(const std::filesystem::path& header, Homes& homes) {
    static const std::regex space(R"(^namespace ([\w:]+) \{)");
    static const std::regex type(R"(^(?:class|struct|union|enum class|enum) (\w+)[^;]*\{)");
    std::istringstream text(test::fileBytes(header));
    std::string inside;
    std::smatch found;
    for (std::string line; std::getline(text, line);) {
        if (std::regex_search(line, found, space)) {
            inside = found[1].str() + "::";
        } else if (std::regex_search(line, found, type)) {
            const auto [home, isNew] = homes.try_emplace(inside + found[1].str(), header);
            EXPECT_TRUE(isNew) << inside << found[1] << " is in " << home->second << " and in "
                               << header;
        }
    }
}

TEST(Names, NoTwoTypesShareOne) {
    constexpr std::string_view folders[] = {
        "app",  "codecs",  "crypt",  "dialogs", "entry",     "examples", "filters", "fonts", "fuzz",
        "host", "objects", "output", "reader",  "resources", "runtime",  "toolbox", "writer"};
    Homes homes;
    for (const std::string_view folder : folders) {
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(test::sourceFolder() / folder)) {
            if (entry.path().extension() == ".h") {
                addTypes(entry.path(), homes);
            }
        }
    }
    EXPECT_GT(homes.size(), 500U);
}

} // namespace
} // namespace corvane
