// Layers, page, import and control through the table.
#include "tests/app/artwork/host_table.h"

#include "app/artwork/provenance.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace corvane {
namespace {

std::string titleOf(const LayerInfo& info) {
    return {info.title + 1, info.title + 1 + info.title[0]};
}

TEST(Callbacks, withoutADocumentSlotsFail) {
    const CallbackTable table;
    const HostProcedure* const procedures = table.ref().get();
    Layer layer{};
    EXPECT_EQ(slotProcedure(procedures, slot::getNextLayer)(Layer::null, &layer),
              HostError::failed);
    EXPECT_EQ(slotProcedure(procedures, slot::checkUserAbort)(), HostBoolean::no);
    EXPECT_EQ(slotProcedure(procedures, slot::redrawDocument) == nullptr, false);
}

TEST(Callbacks, innerScopeCountsWhileItLives) {
    HostTable host;
    ArtboardSize size{1, 2};
    ASSERT_EQ(host(slot::setArtboardSize, &size), HostError::none);
    {
        Document other;
        const CallbackScope inner(other, [] { return true; });
        ASSERT_EQ(host(slot::getArtboardSize, &size), HostError::none);
        EXPECT_EQ(size.width, 0);
        EXPECT_EQ(host(slot::checkUserAbort), HostBoolean::yes);
    }
    ASSERT_EQ(host(slot::getArtboardSize, &size), HostError::none);
    EXPECT_EQ(size.height, 2);
    EXPECT_EQ(host(slot::checkUserAbort), HostBoolean::no);
}

TEST(Callbacks, layersRunFrontToBack) {
    HostTable host;
    Document& document = host.document;
    document.setLayerProperties(document.firstLayer(), {.title = "middle"});
    document.addLayer({.title = "front", .visible = false, .printing = false});
    document.addLayerBehind({.title = "back", .preview = false, .locked = true, .dimmed = true});

    std::string order;
    Layer layer = Layer::null;
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(host(slot::getNextLayer, layer, &layer), HostError::none);
        LayerInfo info;
        ASSERT_EQ(host(slot::getLayerInfo, layer, &info), HostError::none);
        order += titleOf(info) + (info.visible ? " v" : "") + (info.preview ? " p" : "") +
                 (info.locked ? " l" : "") + (info.printing ? " r" : "") +
                 (info.dimmed ? " d; " : "; ");
        Art art{};
        ASSERT_EQ(host(slot::getLayerArt, layer, &art), HostError::none);
        EXPECT_EQ(document.kind(art), ArtKind::group);
        EXPECT_EQ(host(slot::disposeArt, art), HostError::failed);
        EXPECT_EQ(host(slot::newArt, ArtKind::path, Placement::behind, art, &art),
                  HostError::failed);
    }
    EXPECT_EQ(order, "front p; middle v p r; back v l r d; ");
    EXPECT_EQ(layer, document.lastLayer());
    EXPECT_EQ(document.previousLayer(document.previousLayer(layer)), document.firstLayer());
    ASSERT_EQ(host(slot::getNextLayer, layer, &layer), HostError::none);
    EXPECT_EQ(layer, Layer::null);
    LayerInfo info;
    EXPECT_EQ(host(slot::getLayerInfo, Layer::null, &info), HostError::failed);
    EXPECT_EQ(host(slot::getLayerInfo, static_cast<Layer>(4), &info), HostError::failed);
    EXPECT_EQ(host(slot::getNextLayer, static_cast<Layer>(0xFFFFFFFF), &layer), HostError::failed);
}

TEST(Callbacks, longTitlesAreCutBetweenCharacters) {
    HostTable host;
    const Layer layer = host.document.firstLayer();
    const auto told = [&](const std::string& title) {
        host.document.setLayerProperties(layer, {.title = title});
        LayerInfo info;
        EXPECT_EQ(host(slot::getLayerInfo, layer, &info), HostError::none);
        return titleOf(info);
    };
    EXPECT_EQ(told(std::string(255, 'a')), std::string(255, 'a'));
    EXPECT_EQ(told(std::string(254, 'a') + "\xE2\x82\xAC"), std::string(254, 'a'));
    EXPECT_EQ(told(std::string(252, 'a') + "\xE2\x82\xAC" + "b"),
              std::string(252, 'a') + "\xE2\x82\xAC");
    EXPECT_EQ(told(std::string(400, '\x80')), std::string(252, '\x80'));
}

TEST(Callbacks, importsGoToTheFrontLayerAndAreFinishedOnce) {
    HostTable host;
    Art art{};
    ASSERT_EQ(host(slot::getLayerArt, Layer::null, &art), HostError::none);
    EXPECT_EQ(art, host.document.layerArt(host.document.firstLayer()));
    EXPECT_EQ(host(slot::finishImport, art, art), HostError::failed) << "nobody expects one";

    host.document.expectImport();
    EXPECT_EQ(host(slot::finishImport, art, art), HostError::failed) << "not started";
    ASSERT_EQ(host(slot::getLayerArt, Layer::null, &art), HostError::none);
    EXPECT_EQ(host(slot::finishImport, Art::null, Art::null), HostError::failed);
    EXPECT_FALSE(host.document.importFinished());
    EXPECT_EQ(host(slot::finishImport, art, art), HostError::none);
    EXPECT_TRUE(host.document.importFinished());
    EXPECT_EQ(host.document.firstChild(art), Art::null);
}

TEST(Callbacks, pageIsToldByProfile) {
    HostTable host;
    constexpr Rect bounds{.left = -5, .top = 120, .right = 95, .bottom = 20};
    ASSERT_EQ(host(slot::setPageBounds, &bounds), HostError::none);
    const auto told = [&](Profile profile) {
        host.document.page().setProfile(profile);
        DocumentInfo info;
        Point origin;
        Rect rect;
        host(slot::getDocumentInfo, &info);
        EXPECT_EQ(host(slot::getPageOrigin, &origin), HostError::none);
        EXPECT_EQ(host(slot::getPageBounds, &rect), HostError::none);
        EXPECT_EQ(info.origin, origin);
        return std::pair(origin, rect);
    };
    EXPECT_EQ(told(Profile::extended), std::pair(Point{}, bounds));
    EXPECT_EQ(told(Profile::original),
              std::pair(Point{5, -20}, Rect{.left = 0, .top = 100, .right = 100, .bottom = 0}));
    EXPECT_EQ(host.document.page().bounds(), bounds);
}

TEST(Callbacks, formatsAreNoted) {
    HostTable host;
    constexpr std::uint8_t name[] = {3, 'P', 'D', 'F', '!'};
    ASSERT_EQ(host(slot::addFileFormat, name, fourCharacters("PDF "), 6, 0), HostError::none);
    EXPECT_EQ(host(slot::addFileFormat, nullptr, 0, 0, 0), HostError::failed);
    ASSERT_EQ(host.scope.formats().size(), 1u);
    EXPECT_EQ(host.scope.formats()[0].name, "PDF");
    EXPECT_EQ(host.scope.formats()[0].type, fourCharacters("PDF "));
    EXPECT_EQ(host.scope.formats()[0].options, 6);
    EXPECT_EQ(host(slot::modalFilter, nullptr, nullptr, nullptr), HostBoolean::no);
}

TEST(ArtworkLimit, isTakenFromTheEnvironmentWhereItMakesSense) {
    constexpr std::int64_t mebibyte = 1 << 20;
    constexpr std::int64_t usual = 2048 * mebibyte;
    const std::pair<const char*, std::int64_t> rows[] = {
        {"1", mebibyte}, {"4096", 4096 * mebibyte},
        {"0", usual},    {"-3", usual},
        {"12 ", usual},  {"", usual},
        {"x", usual},    {"99999999999999", usual},
        {"1e3", usual},
    };
    for (const auto& [text, limit] : rows) {
        setenv("CORVANE_ART_MB", text, 1);
        EXPECT_EQ(artworkLimit(), limit) << text;
    }
    unsetenv("CORVANE_ART_MB");
    EXPECT_EQ(artworkLimit(), usual);
}

} // namespace
} // namespace corvane
