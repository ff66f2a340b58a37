// Layers that a person made, showed, hid, locked, renamed, and moved art into and out of.
#include "tests/reader/structure_text.h"
#include "tests/writer/patch/patch_fixture.h"

#include <functional>
#include <gmock/gmock.h>
#include <string>

namespace corvane {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class LayerPatchTest : public PatchTest {
public: // for the edits of tables
    using PatchTest::artist;
    using PatchTest::document_;

    /// A page with a layer L, as object 22, which the catalog lists by this entry.
    void openLayered(const std::string& content, const std::string& properties = listed) {
        openFile(withResources(PdfBuilder::onePage(content, std::string(resources)))
                     .object(1, "<< /Type /Catalog /Pages 2 0 R " + properties + " >>")
                     .object(28, "[ (Plans) 22 0 R ]")
                     .object(29, "<< /OCGs [22 0 R] /D << /OFF [22 0 R] >> >>")
                     .bytes());
    }

    ContentLayer known() { return ContentLayer{1}; }
    ContentLayer newLayer(std::string_view name, bool isVisible = true, bool isLocked = false) {
        return document_->contentLayers().add(
            {.name = name, .isVisible = isVisible, .isLocked = isLocked});
    }
    Art root() { return document_->layerArt(document_->firstLayer()); }
    Art group(ContentLayer layer, const std::vector<Art>& members) {
        const Art made = artist().group(members);
        document_->setGroupLayer(made, layer);
        return made;
    }
    /// Groups that are no layers and clip nothing do not count.
    std::string seenLayers() {
        std::string seen;
        std::string closing;
        for (const char letter : structureText(*document_, root())) {
            const bool isFirst =
                seen.empty() || std::string_view(" (<").find(seen.back()) != std::string_view::npos;
            if (letter == '(') {
                closing += isFirst ? '\0' : ')';
                seen += isFirst ? "" : "(";
            } else if (letter == ')') {
                seen += closing.back() == '\0' ? "" : ")";
                closing.pop_back();
            } else {
                seen += letter;
            }
        }
        return seen;
    }

    /// Saves and opens again; what is there then, without sources.
    std::string savedLayers() {
        EXPECT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        EXPECT_EQ(bytes().substr(0, file_.size()), file_);
        EXPECT_EQ(open(), 0U);
        front_.taken();
        std::string seen = seenLayers();
        for (std::size_t at = seen.find('@'); at != std::string::npos; at = seen.find('@')) {
            seen.erase(at, seen.find_first_of(" )>", at) - at);
        }
        return seen;
    }
    /// The newest catalog and what it says of layers.
    std::string properties() const {
        const std::string catalog = object("1");
        const std::string key = "/OCProperties ";
        const std::size_t at = catalog.find(key);
        return at == std::string::npos || catalog[at + key.size()] == '<'
                   ? catalog
                   : catalog +
                         object(catalog.substr(at + key.size(), catalog.find(' ', at + key.size()) -
                                                                    at - key.size()));
    }

    static constexpr const char* listed =
        "/OCProperties << /OCGs [22 0 R] /D << /Name (All) /Order [[(Set) 22 0 R]] >> >>";
};

TEST_F(LayerPatchTest, ArtMovesIntoAndOutOfLayers) {
    struct Row {
        const char* name;
        const char* content;
        std::function<void(LayerPatchTest&)> edit;
        const char* seen;
    };
    static const auto make = [](LayerPatchTest& t, const char* name, std::size_t first,
                                std::size_t last) {
        std::vector<Art> members;
        for (std::size_t i = first; i <= last; ++i) {
            members.push_back(t.artist().at(i));
        }
        t.group(t.newLayer(name), members);
    };
    const char* const three = "0 0 1 1 re f 0 0 2 2 re f 0 0 3 3 re f";
    const char* const inL = "/OC /L BDC 0 0 1 1 re f 0 0 2 2 re f EMC 0 0 3 3 re f";
    const Row rows[] = {
        {"one into a new layer", three, [](LayerPatchTest& t) { make(t, "N", 1, 1); },
         "0,0 1,1 +N(0,0 2,2) 0,0 3,3"},
        {"the last two", three, [](LayerPatchTest& t) { make(t, "N", 1, 2); },
         "0,0 1,1 +N(0,0 2,2 0,0 3,3)"},
        {"new art, in a layer within one", three,
         [](LayerPatchTest& t) {
             const Art inner = t.group(t.newLayer("B"), {t.artist().add(5, 5, 1, 1)});
             t.group(t.newLayer("A"), {t.artist().at(2), inner});
         },
         "0,0 1,1 0,0 2,2 +A(0,0 3,3 +B(5,5 6,6))"},
        {"out of a layer", inL,
         [](LayerPatchTest& t) { t.artist().raise(t.artist().at(1), t.artist().at(2)); },
         "+L(0,0 1,1) 0,0 3,3 0,0 2,2"},
        {"between two of a layer", inL,
         [](LayerPatchTest& t) {
             const Art art = t.artist().at(1);
             const Art outer = t.document_->parent(art);
             t.document_->reorder(art, Placement::inFront, outer);
             t.group(t.known(), {t.artist().add(7, 7, 1, 1, art)});
         },
         "+L(0,0 1,1) 0,0 2,2 +L(7,7 8,8) 0,0 3,3"},
        {"new art in a layer of the page", inL,
         [](LayerPatchTest& t) { t.artist().add(7, 7, 1, 1, t.artist().at(0)); },
         "+L(0,0 1,1 7,7 8,8 0,0 2,2) 0,0 3,3"},
        {"from a layer of the page into a new one", inL,
         [](LayerPatchTest& t) {
             const Art art = t.artist().at(0);
             t.document_->reorder(art, Placement::behind, t.document_->parent(art));
             t.group(t.newLayer("N"), {art});
         },
         "+N(0,0 1,1) +L(0,0 2,2) 0,0 3,3"},
        {"into a layer of the page", inL,
         [](LayerPatchTest& t) { t.artist().raise(t.artist().at(2), t.artist().at(1)); },
         "+L(0,0 1,1 0,0 2,2 0,0 3,3)"},
        {"a clip in a new layer", "q 0 0 9 9 re W n 0 0 1 1 re f Q",
         [](LayerPatchTest& t) {
             t.group(t.newLayer("N"), {t.document_->parent(t.artist().at(0))});
         },
         "+N(<0,0 1,1 0,0 9,9>)"},
        {"a layer in a group that is one thing", inL,
         [](LayerPatchTest& t) {
             t.document_->setAppearance(
                 t.artist().group({t.document_->parent(t.artist().at(0)), t.artist().at(2)}),
                 {.opacity = .5});
         },
         "31.1<+L(0,0 1,1 0,0 2,2) 0,0 3,3 0,0 612,792>"},
        {"such a group in a layer of the page", inL,
         [](LayerPatchTest& t) {
             t.document_->setAppearance(t.artist().group({t.artist().at(0), t.artist().at(1)}),
                                        {.opacity = .5});
         },
         "+L(31.1<0,0 1,1 0,0 2,2 0,0 612,792>) 0,0 3,3"},
        {"a layer of the page that becomes one thing", inL,
         [](LayerPatchTest& t) {
             t.document_->setAppearance(t.document_->parent(t.artist().at(0)), {.opacity = .5});
         },
         "+L(31.1<0,0 1,1 0,0 2,2 0,0 612,792>) 0,0 3,3"},
        {"and a layer in a clip", "q 0 0 9 9 re W n 0 0 1 1 re f 0 0 2 2 re f Q",
         [](LayerPatchTest& t) { make(t, "N", 0, 0); }, "<+N(0,0 1,1) 0,0 2,2 0,0 9,9>"},
    };
    for (const Row& row : rows) {
        openLayered(row.content);
        row.edit(*this);
        EXPECT_EQ(savedLayers(), row.seen) << row.name << newContent();
    }
}

TEST_F(LayerPatchTest, NewOnesAreListed) {
    struct Row {
        const char* name;
        const char* properties;
        std::vector<const char*> listed;
    };
    const Row rows[] = {
        {"a file without layers",
         "",
         {"/OCGs [ 30 0 R ]", "/Order [ 30 0 R ]", "/Version /1.5", "/OFF [ 30 0 R ]",
          "/Locked [ 30 0 R ]"}},
        {"beside others",
         listed,
         {"/OCGs [ 22 0 R 30 0 R ]", "/Order [ [ <536574> 22 0 R ] 30 0 R ]", "/Name (All)"}},
        {"lists that stand for themselves",
         "/OCProperties << /OCGs [22 0 R] /D << /Order 28 0 R >> >>",
         {"/Order [ <506C616E73> 22 0 R 30 0 R ]"}},
        {"an object of their own", "/OCProperties 29 0 R", {"/OFF [ 22 0 R 30 0 R ]"}},
        {"all hidden that are not named",
         "/OCProperties << /OCGs [22 0 R] /D << /BaseState /OFF /ON [22 0 R] >> >>",
         {"/ON [ 22 0 R ]", "/BaseState /OFF"}},
    };
    for (const Row& row : rows) {
        openLayered("0 0 1 1 re f", row.properties);
        const Layer layer = document_->addLayer({.title = "Notes"});
        document_->setGroupLayer(document_->layerArt(layer), newLayer("Gr\xC3\xBC"
                                                                      "n 1",
                                                                      false, true));
        document_->reorder(artist().add(5, 5, 1, 1), Placement::inside, document_->layerArt(layer));
        EXPECT_EQ(savedLayers(), "0,0 1,1 -Gr\xC3\xBCn 1(5,5 6,6)") << row.name;
        const ContentLayerFacts facts = document_->contentLayers().facts(known());
        EXPECT_TRUE(facts.isLocked || std::string(row.properties).find("BaseState") == 0);
        for (const char* const entry : row.listed) {
            EXPECT_THAT(properties() + object("29"), HasSubstr(entry)) << row.name;
        }
    }
}

TEST_F(LayerPatchTest, AreShownHiddenLockedAndRenamed) {
    const ContentLayerFacts opened{.name = "L", .isVisible = true, .isLocked = false, .object = 22};
    struct Row {
        const char* name;
        ContentLayerFacts now;
        const char* properties;
        const char* has;
        const char* hasNot;
        const char* seen;
    };
    const Row rows[] = {
        {"hidden", {"L", false, false, 22}, listed, "/OFF [ 22 0 R ]", "/Locked", "-L(0,0 1,1)"},
        {"locked", {"L", true, true, 22}, listed, "/Locked [ 22 0 R ]", "/OFF", "+L(0,0 1,1)"},
        {"renamed",
         {"Walls", true, false, 22},
         listed,
         "/OCGs [ 22 0 R ]",
         "/OFF",
         "+Walls(0,0 1,1)"},
        {"hidden in a file that shows what it names",
         {"L", false, false, 22},
         "/OCProperties << /OCGs [22 0 R] /D << /BaseState /OFF /ON [22 0 R] >> >>",
         "/BaseState /OFF",
         "/ON",
         "-L(0,0 1,1)"},
        {"hidden where nothing lists it",
         {"L", false, false, 22},
         "",
         "/OFF [ 22 0 R ]",
         "/ON",
         "-L(0,0 1,1)"},
    };
    for (const Row& row : rows) {
        openLayered("/OC /L BDC 0 0 1 1 re f EMC", row.properties);
        document_->contentLayers().addEdited(row.now, opened);
        EXPECT_EQ(savedLayers(), row.seen) << row.name;
        EXPECT_THAT(properties(), HasSubstr(row.has)) << row.name;
        EXPECT_THAT(properties(), Not(HasSubstr(row.hasNot))) << row.name;
        EXPECT_EQ(bytes().find("/Type /Page\n", file_.size()), std::string::npos) << row.name;
        // The artwork is still that of the page, and says nothing new.
        digest_ = identity_;
        ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        EXPECT_TRUE(saved_.back().isNothing) << row.name;
    }
    // Shown again, by what the file says then.
    openLayered("/OC /L BDC 0 0 1 1 re f EMC",
                "/OCProperties << /OCGs [22 0 R] /D << /OFF [22 0 R] >> >>");
    EXPECT_EQ(seenLayers(), "-L(0,0 1,1@0:0)");
    document_->contentLayers().addEdited(opened, {"L", false, false, 22});
    EXPECT_EQ(savedLayers(), "+L(0,0 1,1)");
    EXPECT_THAT(properties(), Not(HasSubstr("/OFF")));
}

TEST_F(LayerPatchTest, WhatNobodyChangedStays) {
    // An editor dropped all that says which layers there are.
    openLayered("/OC /L BDC 0 0 1 1 re f EMC 0 0 2 2 re f");
    document_->setGroupLayer(document_->parent(artist().at(0)), ContentLayer::null);
    ASSERT_EQ(save(), 0U);
    EXPECT_TRUE(saved_.back().isNothing);
    // Or its number.
    openLayered("/OC /L BDC 0 0 1 1 re f EMC 0 0 2 2 re f");
    document_->setGroupLayer(document_->parent(artist().at(0)), newLayer("L"));
    ASSERT_EQ(save(), 0U);
    EXPECT_TRUE(saved_.back().isNothing);
    // Another save changed the layer since the artwork was opened.
    openLayered("/OC /L BDC 0 0 1 1 re f EMC", "/OCProperties << /D << /OFF [22 0 R] >> >>");
    document_.emplace();
    scope_.reset();
    scope_.emplace(*document_);
    const ContentLayerFacts shown{.name = "Old name", .object = 22};
    const ContentLayer layer = document_->contentLayers().addEdited(shown, shown);
    group(layer, {artist().add(0, 0, 1, 1)});
    extension_.overwrites = true;
    EXPECT_EQ(savedLayers(), "-L(0,0 1,1)");
    EXPECT_EQ(bytes().find("\n22 0 obj", file_.size()), std::string::npos) << "no new copy";
}

/// What shows as one group does is that group; what follows from several stays.
/// A layer in a group that is none is no layer for editors, and where they drop marks nothing says
/// that it was one.
TEST_F(LayerPatchTest, WhatNoEditorShowsAsALayerStaysInIt) {
    for (const bool isNested : {true, false}) {
        const std::string inner = "/OC /L BDC 9 9 5 5 re f EMC";
        openLayered("/OC /L BDC 0 0 5 5 re f EMC q 1 1 3 3 re f " +
                    (isNested ? inner + " 2 2 4 4 re f Q" : "Q " + inner));
        document_->setGroupLayer(document_->parent(artist().at(0)), newLayer("L"));
        document_->setGroupLayer(document_->parent(artist().at(2)), ContentLayer::null);
        ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        EXPECT_EQ(saved_.back().isNothing, isNested);
    }
}

TEST_F(LayerPatchTest, RulesOfLayers) {
    struct Row {
        const char* rule;
        const char* has; ///< null: it stays
    };
    for (const Row& row :
         {Row{"/OCGs [22 0 R]", "/OFF [ 22 0 R ]"},
          Row{"/OCGs 22 0 R /P /AllOn", "/OFF [ 22 0 R ]"}, Row{"/OCGs [22 0 R 31 0 R]", nullptr},
          Row{"/OCGs [22 0 R] /P /AllOff", nullptr},
          Row{"/OCGs [22 0 R] /VE [/Not 22 0 R]", nullptr}}) {
        openFile(withResources(PdfBuilder::onePage("/OC /M BDC 0 0 1 1 re f EMC",
                                                   "/Resources << /Properties << /M 30 0 R >> >>"))
                     .object(30, "<< /Type /OCMD " + std::string(row.rule) + " >>")
                     .object(31, "<< /Type /OCG /Name (B) >>")
                     .bytes());
        const ContentLayerFacts was = document_->contentLayers().facts(known());
        ContentLayerFacts now = was;
        now.isVisible = !was.isVisible;
        document_->contentLayers().addEdited(now, was);
        ASSERT_EQ(save(), 0U) << row.rule;
        EXPECT_EQ(saved_.back().isNothing, row.has == nullptr) << row.rule;
        const std::string told = ::testing::PrintToString(front_.taken());
        EXPECT_EQ(told.find("write 1013") != std::string::npos, row.has == nullptr) << row.rule;
        if (row.has != nullptr) {
            EXPECT_THAT(properties(), HasSubstr(row.has)) << row.rule;
        }
    }
}

/// Its name and whether it shows are all that artwork can say of it.
TEST_F(LayerPatchTest, LayersWithoutANumberAreKnownAgain) {
    const auto again = [&](const char* rule, bool isVisible) {
        openFile(
            withResources(PdfBuilder::onePage(
                              "/OC /M BDC 0 0 1 1 re f EMC",
                              "/Resources << /Properties << /M << /Type /OCMD /OCGs [22 0 R] " +
                                  std::string(rule) + " >> >> >>"))
                .bytes());
        ContentLayerFacts facts = document_->contentLayers().facts(known());
        EXPECT_EQ(facts.object, 0) << rule;
        facts.isVisible = isVisible;
        const Art group = document_->firstChild(root());
        document_->setGroupLayer(group, document_->contentLayers().addEdited(facts, facts));
        EXPECT_EQ(save(), 0U) << rule;
        return saved_.back().isNothing;
    };
    EXPECT_TRUE(again("/P /AllOff", false));
    EXPECT_TRUE(again("/P /AnyOn", true));
    EXPECT_FALSE(again("/P /AllOff", true)) << "another layer";
}

TEST_F(LayerPatchTest, AnObjectThatNamesItsLayerStaysInIt) {
    openFile(withResources(PdfBuilder::onePage("/G Do 0 0 2 2 re f",
                                               "/Resources << /XObject << /G 30 0 R >> >>"))
                 .stream(30, "0 0 1 1 re f", "/Subtype /Form /OC 22 0 R /BBox [0 0 9 9]")
                 .bytes());
    const Art form = document_->firstChild(document_->lastChild(root()));
    document_->reorder(form, Placement::inside, root());
    group(known(), {artist().add(5, 5, 1, 1)});
    EXPECT_NE(save(), 0U);
    EXPECT_THAT(::testing::PrintToString(front_.taken()), HasSubstr("error 31"));
}

/// The artwork of one opening is saved again and again; its layers do not pile up.
TEST_F(LayerPatchTest, SavedAgainTheyAreTheSame) {
    openLayered("0 0 1 1 re f");
    const ContentLayer layer = newLayer("N");
    group(layer, {artist().at(0)});
    ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
    EXPECT_THAT(properties(), HasSubstr("/OCGs [ 22 0 R 30 0 R ]"));
    artist().move(artist().at(0), 1, 1);
    ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
    EXPECT_THAT(properties(), HasSubstr("/OCGs [ 22 0 R 30 0 R ]"));
    document_->setGroupLayer(document_->parent(artist().at(0)), ContentLayer::null);
    ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
    EXPECT_THAT(properties(), HasSubstr("/OCGs [ 22 0 R ]")) << "gone with what was in it";
}

} // namespace
} // namespace corvane
