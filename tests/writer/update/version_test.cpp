// The version that the catalog names once something is written that the file's own does not have.
#include "tests/writer/patch/patch_fixture.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace corvane {
namespace {

class VersionTest : public PatchTest {
public: // for the edits of the table
    using PatchTest::artist;
    using PatchTest::document_;
    using PatchTest::extension_;

    /// What the newest catalog names; empty where it names none or stayed.
    std::string versionAfter(const std::string& header, const std::string& catalog,
                             const std::function<void(VersionTest&)>& edit) {
        std::string file = PdfBuilder::onePage("0 0 50 50 re f")
                               .object(1, "<< /Type /Catalog /Pages 2 0 R " + catalog + " >>")
                               .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] "
                                          "/Contents [4 0 R 5 0 R] >>")
                               .stream(5, "60 60 9 9 re f")
                               .bytes();
        openFile(file.replace(5, 3, header));
        edit(*this);
        EXPECT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        EXPECT_EQ(open(), 0U);
        const std::string update = bytes().substr(file_.size());
        const std::size_t at = update.find("/Version /");
        return at == std::string::npos ? "" : update.substr(at + 10, 3);
    }

    void paint(const Colour& colour) {
        Artist a = artist();
        a.style(a.at(0), [&](PathStyle& style) { style.fill = colour; });
    }
};

TEST_F(VersionTest, IsRaisedWhereItMustBe) {
    const auto recolour = [](VersionTest& t) { t.artist().fill(t.artist().at(0), .5); };
    const auto compress = [](VersionTest& t) {
        t.extension_.plainContent = false;
        for (int i = 0; i < 40; ++i) {
            t.artist().add(i, i, 5, 5);
        }
    };
    const auto ink = [](VersionTest& t) {
        Colour colour{.kind = ColourKind::custom};
        colour.source = t.document_->addSpotColour({.name = "Gold"});
        t.paint(colour);
    };
    const auto gradient = [](VersionTest& t) {
        Colour colour{.kind = ColourKind::gradient};
        colour.source = t.document_->addGradient(
            {.x2 = 40, .matrix = {}, .stops = {{0, Colour(), 1}, {1, Colour(), 1}}});
        t.paint(colour);
    };
    const auto opacity = [](VersionTest& t) {
        t.document_->setAppearance(t.artist().at(0), {.fillOpacity = .5});
    };
    const auto layer = [](VersionTest& t) {
        const Art group = t.artist().group({t.artist().at(0)});
        t.document_->setGroupLayer(group, t.document_->contentLayers().add({.name = "N"}));
    };
    struct Row {
        const char* name;
        const char* header;
        const char* catalog;
        std::function<void(VersionTest&)> edit;
        const char* version;
    };
    for (const Row& row : {
             Row{"a colour", "1.1", "", recolour, ""},
             Row{"compressed content", "1.1", "", compress, "1.2"},
             Row{"an ink", "1.1", "", ink, "1.2"},
             Row{"a shading", "1.2", "", gradient, "1.3"},
             Row{"opacity", "1.3", "", opacity, "1.4"},
             Row{"a layer", "1.4", "", layer, "1.5"},
             Row{"the header is enough", "1.5", "", layer, ""},
             Row{"the catalog is enough", "1.1", "/Version /1.7", layer, "1.7"},
             Row{"the catalog names less", "1.1", "/Version /1.4", layer, "1.5"},
             Row{"the header is enough for what the catalog names less", "2.0", "/Version /1.4",
                 layer, "1.4"},
         }) {
        EXPECT_EQ(versionAfter(row.header, row.catalog, row.edit), row.version) << row.name;
        extension_.plainContent = true;
    }
}

/// A catalog that stands in the trailer becomes an object, with all that it says.
TEST_F(VersionTest, OfACatalogInTheTrailer) {
    openFile(PdfBuilder()
                 .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
                 .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] /Contents 4 0 R >>")
                 .stream(4, "0 0 5 5 re f")
                 .trailer("/Size 5 /Root << /Type /Catalog /Pages 2 0 R /Lang (en) >>")
                 .bytes());
    const Art group = artist().group({artist().at(0)});
    document_->setGroupLayer(group, document_->contentLayers().add({.name = "N"}));
    ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
    ASSERT_EQ(open(), 0U);
    const std::string update = bytes().substr(file_.size());
    for (const char* const part : {"/Lang (en)", "/Version /1.5", "/OCProperties ", "/Root "}) {
        EXPECT_NE(update.find(part), std::string::npos) << part << update;
    }
}

} // namespace
} // namespace corvane
