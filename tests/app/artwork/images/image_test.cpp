// Images through the table: facts, bytes, placed objects.
#include "tests/app/artwork/host_table.h"

#include "app/artwork/geometry/transform_art.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace corvane {
namespace {

/// Notes what it is given.
class NotingStore final : public ImageStore {
public:
    std::optional<ImageFile> find(const ImageFacts& facts) override {
        return facts.key == "old" ? std::optional(ImageFile{"old.png", 7}) : std::nullopt;
    }
    std::unique_ptr<ImageSink> begin(const ImageFacts& facts) override {
        return std::make_unique<Sink>(*this, facts.key == "full");
    }

    std::string notes;

private:
    class Sink final : public ImageSink {
    public:
        Sink(NotingStore& store, bool isFull) : store_(store), isFull_(isFull) {}
        ~Sink() override { store_.notes += '.'; }
        void add(std::span<const std::byte> bytes) override {
            if (isFull_) {
                throw ArtworkError("the disk is full");
            }
            store_.notes += std::to_string(bytes.size());
        }
        ImageFile end() override {
            store_.notes += "end";
            return {"new.png", 9};
        }

    private:
        NotingStore& store_;
        bool isFull_;
    };
};

class ThreeBytes final : public ImageContent {
public:
    std::unique_ptr<ImageSource> open() const override {
        class Source final : public ImageSource {
        public:
            std::size_t read(std::span<std::byte> into) override {
                std::size_t count = 0;
                for (; count < into.size() && next_ < 3; ++count) {
                    into[count] = static_cast<std::byte>(next_++);
                }
                return count;
            }

        private:
            int next_ = 0;
        };
        return std::make_unique<Source>();
    }
};

struct ImageTest : testing::Test {
    Image add(const ImageFacts& facts) {
        Image image = Image::null;
        EXPECT_EQ(host(slot::addImage, &facts, &image, &wants), HostError::none);
        return image;
    }
    Art makePlaced() {
        return host.make(ArtKind::placed, Placement::inside,
                         host.document.layerArt(host.document.firstLayer()));
    }
    PlacedImage placedImage(Art art) {
        PlacedImage placed;
        EXPECT_EQ(host(slot::getPlacedImage, art, &placed), HostError::none);
        return placed;
    }

    HostTable host;
    NotingStore store;
    std::uint8_t wants = 9;
};

TEST_F(ImageTest, WhatHasNoMeaningIsRefused) {
    const std::array<std::uint8_t, 12> palette{};
    const std::string longKey(65, 'a');
    const ImageFacts gray{.width = 2, .height = 2};
    std::vector<ImageFacts> wrong(16, gray);
    wrong[0].width = 0;
    wrong[1].height = -1;
    wrong[2].bits = 3;
    wrong[3].bits = -1;
    wrong[4].coding = static_cast<ImageCoding>(2);
    wrong[5].colours = static_cast<ImageColours>(4);
    wrong[6].colours = ImageColours::cmyk;
    wrong[7].colours = ImageColours::indexed;
    wrong[8] = {
        .width = 2, .height = 2, .colours = ImageColours::indexed, .bits = 1, .palette = palette};
    wrong[9].palette = palette;
    wrong[10] = {.width = 2, .height = 2, .bits = 4, .hasAlpha = true};
    wrong[11] = {.width = 2, .height = 2, .coding = ImageCoding::jpeg, .hasAlpha = true};
    wrong[12].key = "../a";
    wrong[13].key = longKey;
    wrong[14].width = std::numeric_limits<std::int32_t>::max();
    wrong[15] = {.width = 2, .height = 2, .coding = ImageCoding::jpeg, .bits = 16};
    for (const ImageFacts& facts : wrong) {
        Image image = Image::null;
        EXPECT_EQ(host(slot::addImage, &facts, &image, &wants), HostError::failed)
            << &facts - wrong.data();
    }
    EXPECT_EQ(host(slot::addImage, nullptr, nullptr, nullptr), HostError::failed);
    ImageFacts facts;
    EXPECT_EQ(host(slot::getImageFacts, static_cast<Image>(1), &facts), HostError::failed);
    EXPECT_EQ(host.document.images().size(), 0U);
}

TEST_F(ImageTest, BytesAreWantedOnceAndWhereTheyAreKept) {
    const ImageFacts facts{.width = 2, .height = 2, .key = "12-ab"};
    const Image unkept = add({.width = 1, .height = 1, .key = "9-c"});
    EXPECT_EQ(wants, 0);
    host.document.images().setStore(&store);
    const Image image = add(facts);
    EXPECT_EQ(wants, 1);
    EXPECT_EQ(add(facts), image);
    EXPECT_EQ(wants, 0);
    EXPECT_EQ(add({.width = 1, .height = 1, .key = "9-c"}), unkept);
    EXPECT_EQ(host.document.images().file(image), nullptr);

    const std::array<std::byte, 4> bytes{};
    EXPECT_EQ(host(slot::addImageBytes, image, bytes.data(), 4), HostError::none);
    EXPECT_EQ(host(slot::addImageBytes, image, nullptr, 0), HostError::none);
    EXPECT_EQ(host(slot::addImageBytes, image, nullptr, 1), HostError::failed);
    EXPECT_EQ(host(slot::addImageBytes, image, bytes.data(), -1), HostError::failed);
    EXPECT_EQ(host(slot::addImageBytes, unkept, bytes.data(), 4), HostError::failed);
    EXPECT_EQ(host(slot::endImage, image), HostError::none);
    EXPECT_EQ(host(slot::endImage, image), HostError::failed);
    EXPECT_EQ(store.notes, "40end.");
    EXPECT_EQ(host.document.images().file(image)->address, "new.png");

    const Image old = add({.width = 1, .height = 1, .key = "old"});
    EXPECT_EQ(wants, 0);
    EXPECT_EQ(host.document.images().file(old)->digest, 7U);

    const Image damaged = add({.width = 1, .height = 1, .key = "damaged"});
    EXPECT_EQ(host(slot::giveUpImage, damaged), HostError::none);
    ImageFacts found;
    EXPECT_EQ(host(slot::getImageFacts, damaged, &found), HostError::none);
    EXPECT_TRUE(found.isPlaceholder);
    EXPECT_EQ(found.key, "damaged");
    EXPECT_EQ(host.document.images().file(damaged), nullptr);
    add({.width = 1, .height = 1, .key = "kept", .isPlaceholder = true});
    EXPECT_EQ(wants, 0);

    const Image full = add({.width = 1, .height = 1, .key = "full"});
    EXPECT_EQ(host(slot::addImageBytes, full, bytes.data(), 1), HostError::failed);
    EXPECT_EQ(host.scope.failure(), "the disk is full");
}

TEST_F(ImageTest, BytesOfAFileAreReadAsOftenAsTheyAreOpened) {
    const Image image = host.document.images().add({.width = 3, .height = 1}, {"a.png"},
                                                   std::make_shared<ThreeBytes>());
    std::array<std::byte, 2> block{};
    std::int64_t count = 0;
    EXPECT_EQ(host(slot::readImageBytes, image, block.data(), 2, &count), HostError::failed);
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(host(slot::openImageBytes, image), HostError::none);
        EXPECT_EQ(host(slot::readImageBytes, image, block.data(), 2, &count), HostError::none);
        EXPECT_EQ(count, 2);
        EXPECT_EQ(block[1], std::byte{1});
        EXPECT_EQ(host(slot::readImageBytes, image, block.data(), -1, &count), HostError::failed);
        EXPECT_EQ(host(slot::readImageBytes, image, block.data(), 2, &count), HostError::none);
        EXPECT_EQ(count, 1);
    }
    EXPECT_EQ(host(slot::openImageBytes, add({.width = 1, .height = 1})), HostError::failed);
}

TEST_F(ImageTest, PlacedObjectsShowThem) {
    const Art placed = makePlaced();
    EXPECT_EQ(placedImage(placed).image, Image::null);
    PlacedImage shown{.image = add({.width = 1, .height = 1}),
                      .matrix = {3 * fixedOne, 0, 0, 2 * fixedOne, fixedOne, 0},
                      .isSmooth = false};
    ASSERT_EQ(host(slot::setPlacedImage, placed, &shown), HostError::none);
    const Art copy = host.document.duplicate(placed, Placement::inFront, placed);
    transformArt(host.document, placed, {0, 2, -1, 0, .5, 0});
    EXPECT_EQ(placedImage(placed).matrix,
              (Matrix{0, 6 * fixedOne, -2 * fixedOne, 0, fixedOne / 2, 2 * fixedOne}));
    EXPECT_EQ(placedImage(copy).matrix, shown.matrix);
    EXPECT_EQ(placedImage(copy).image, shown.image);
    EXPECT_FALSE(placedImage(copy).isSmooth);
    host.document.dispose(placed);
    EXPECT_EQ(placedImage(makePlaced()).image, Image::null);

    shown.image = static_cast<Image>(77);
    EXPECT_EQ(host(slot::setPlacedImage, copy, &shown), HostError::failed);
    const Art path = host.make(ArtKind::path, Placement::inFront, copy);
    EXPECT_EQ(host(slot::getPlacedImage, path, &shown), HostError::failed);
}

} // namespace
} // namespace corvane
