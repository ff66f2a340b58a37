// Addresses of images: what they lead to, and what must not be read.
#include "app/images/base64.h"
#include "app/images/byte_source.h"
#include "app/images/image_error.h"
#include "app/images/image_folders.h"

#include "tests/app/images/png_images.h"
#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;

TEST(ImageAddress, IsOfAFileOrEmbeddedOrOfTheNetwork) {
    using enum AddressKind;
    struct Row {
        std::string address;
        AddressKind kind;
    };
    for (const Row& row :
         {Row{"a.png", file}, Row{"../a%3Ab.png", file}, Row{"/tmp/a.png", file},
          Row{"1:2.png", file}, Row{"file:///tmp/a.png", file}, Row{"FILE:a.png", file},
          Row{"file://localhost/a.png", file}, Row{"file://host/a.png", network},
          Row{"//host/a.png", network}, Row{"https://host/a.png", network}, Row{"x:a.png", network},
          Row{"data:image/png;base64,AA", embedded}, Row{"DATA:,", embedded}}) {
        EXPECT_EQ(addressKind(row.address), row.kind) << row.address;
    }
}

TEST(ImageAddress, CarriesBytes) {
    struct Row {
        std::string address;
        std::string bytes;
    };
    for (const Row& row : {Row{"data:image/png;base64,AAEC", std::string("\0\1\2", 3)},
                           Row{"data:;BASE64 , AA\n EC Aw=", std::string("\0\1\2\3", 4)},
                           Row{"data:;base64,%2B%2F%2b8=", "\xFB\xFF\xBC"},
                           Row{"data:,a%20%4", "a %4"}, Row{"data:;base64,", ""}}) {
        EXPECT_EQ(test::text(embeddedBytes(row.address)), row.bytes) << row.address;
    }
    for (const char* const wrong :
         {"data:image/png;base64", "data:;base64,A*A", "data:;base64,A=A"}) {
        EXPECT_THROW(embeddedBytes(wrong), ImageError) << wrong;
    }
    for (std::size_t size = 0; size < 6; ++size) {
        std::vector<std::byte> bytes(size, std::byte{0xC5});
        std::string text;
        Base64Writer writer(text);
        writer.add(bytes);
        writer.end();
        EXPECT_EQ(text.size() % 4, 0U);
        EXPECT_EQ(fromBase64(text), bytes);
    }
    const std::string odd = "a b/\xC3\xA4%#?:.png";
    EXPECT_EQ(escapedPath(odd), "a%20b/%C3%A4%25%23%3F%3A.png");
    EXPECT_EQ(withoutEscapes(escapedPath(odd)), odd);
}

/// The bytes that an address leads to, or why not.
std::string found(const ImageFolders& folders, const std::string& address) {
    try {
        std::vector<std::byte> bytes(10);
        bytes.resize(resolvedFileOrigin(folders.find(address))->open()->readAt(0, bytes));
        return test::text(bytes);
    } catch (const ImageError& error) {
        return "! " + std::string(error.what()).substr(0, 12);
    }
}

TEST(ImageFolders, OnlyFilesOfTheirFoldersAreRead) {
    const test::TemporaryFolder folder;
    const auto path = [&](const std::string& name) { return (folder.path() / name).string(); };
    for (const char* const name : {"art/deep", "pictures", "artful"}) {
        fs::create_directories(folder.path() / name);
    }
    folder.add("art/a b%41.png", "one");
    folder.add("art/deep/b.png", "two");
    folder.add("pictures/c.png", "three");
    folder.add("artful/d.png", "four");
    folder.add("secret", "five");
    fs::create_symlink("../secret", path("art/link.png"));
    fs::create_symlink("deep/b.png", path("art/inner.png"));
    fs::create_directory_symlink("..", path("art/up"));
    fs::create_symlink("art", path("same"));
    ASSERT_EQ(mkfifo(path("art/pipe").c_str(), 0600), 0);

    const ImageFolders some(path("same"), {path("pictures")}, false);
    const ImageFolders all(path("art"), {}, true);
    struct Row {
        std::string address;
        std::string some;
        std::string all;
    };
    const std::string outside = "! lies outside";
    const std::string missing = "! cannot be re";
    for (const Row& row :
         {Row{"a%20b%2541.png", "one", "one"}, Row{"a b%2541.png?x#y", "one", "one"},
          Row{"./deep/../deep/b.png", "two", "two"}, Row{"inner.png", "two", "two"},
          Row{path("art/deep/b.png"), "two", "two"},
          Row{"file://" + path("art/deep/b.png"), "two", "two"},
          Row{"../pictures/c.png", "three", "three"}, Row{"../artful/d.png", outside, "four"},
          Row{"../secret", outside, "five"}, Row{"%2e%2e/secret", outside, "five"},
          Row{"link.png", outside, "five"}, Row{"up/secret", outside, "five"},
          Row{"/etc/passwd", outside, "root:x:0:0"}, Row{"no.png", missing, missing},
          Row{"deep", "! is no file", "! is no file"}, Row{"pipe", "! is no file", "! is no file"},
          Row{"", "! is no name o", "! is no name o"},
          Row{"a%00b", "! is no name o", "! is no name o"}}) {
        EXPECT_EQ(found(some, row.address), row.some) << row.address;
        EXPECT_EQ(found(all, row.address), row.all) << row.address;
    }
    // A folder that becomes a link once it was looked at.
    const auto file = resolvedFileOrigin(some.find("deep/b.png"));
    fs::rename(path("art/deep"), path("moved"));
    fs::create_directory_symlink("../moved", path("art/deep"));
    EXPECT_THROW(file->open(), ImageError);
}

} // namespace
} // namespace corvane
