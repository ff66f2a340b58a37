// The art tree as the slots show it: against a naive model, with handles that are no longer good,
// and at its limits.
#include "tests/app/artwork/host_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <vector>

namespace corvane {
namespace {

constexpr ArtKind kinds[] = {ArtKind::group, ArtKind::path, ArtKind::compound, ArtKind::text,
                             ArtKind::placed};
constexpr Placement placements[] = {Placement::inFront, Placement::behind, Placement::inside};

/// A tree of maps and vectors, searched from end to end: slow and plain.
class Model {
public:
    struct Node {
        ArtKind kind;
        Art parent = Art::null;
        std::vector<Art> children{};
        bool clipped = false;
        ArtSource source{};
    };

    explicit Model(Art root) { nodes[root] = {.kind = ArtKind::group}; }

    bool has(Art art) const { return nodes.contains(art); }

    Art parentAt(Placement placement, Art reference) const {
        return placement == Placement::inside ? reference : nodes.at(reference).parent;
    }

    bool takes(ArtKind kind, Placement placement, Art reference) const {
        if (!has(reference) || parentAt(placement, reference) == Art::null) {
            return false;
        }
        const ArtKind holder = nodes.at(parentAt(placement, reference)).kind;
        return holder == ArtKind::group || (holder == ArtKind::compound && kind == ArtKind::path);
    }

    bool within(Art art, Art ancestor) const {
        while (art != ancestor && art != Art::null) {
            art = nodes.at(art).parent;
        }
        return art == ancestor;
    }

    void insert(Art art, Placement placement, Art reference) {
        const Art parent = parentAt(placement, reference);
        auto& list = nodes.at(parent).children;
        auto at = std::ranges::find(list, reference);
        if (placement == Placement::inside) {
            at = list.begin();
        } else if (placement == Placement::behind) {
            ++at;
        }
        list.insert(at, art);
        nodes.at(art).parent = parent;
    }

    void detach(Art art) { std::erase(nodes.at(nodes.at(art).parent).children, art); }

    void erase(Art art) {
        for (const Art child : nodes.at(art).children) {
            erase(child);
        }
        nodes.erase(art);
    }

    std::map<Art, Node> nodes;
};

class TreeAgainstModel : public testing::TestWithParam<unsigned> {
protected:
    template <class T, std::size_t count>
    T any(const T (&choices)[count]) {
        return choices[random_() % count];
    }

    /// Mostly art that is there, sometimes art that was, or never was.
    Art anyArt() {
        if (random_() % 16 == 0) {
            return gone_.empty() ? static_cast<Art>(random_()) : gone_[random_() % gone_.size()];
        }
        return std::next(model_.nodes.begin(),
                         static_cast<std::ptrdiff_t>(random_() % model_.nodes.size()))
            ->first;
    }

    static HostError outcome(bool works) { return works ? HostError::none : HostError::failed; }

    void make() {
        const ArtKind kind = any(kinds);
        const Placement placement = any(placements);
        const Art reference = anyArt();
        const bool works = model_.takes(kind, placement, reference);
        Art made = Art::null;
        ASSERT_EQ(host_(slot::newArt, kind, placement, reference, &made), outcome(works));
        if (works) {
            ASSERT_FALSE(model_.has(made));
            model_.nodes[made] = {.kind = kind};
            model_.insert(made, placement, reference);
        }
    }

    void move() {
        const Art art = anyArt();
        const Placement placement = any(placements);
        const Art reference = anyArt();
        const bool works = model_.has(art) && art != root_ && art != reference &&
                           model_.takes(model_.nodes.at(art).kind, placement, reference) &&
                           !model_.within(model_.parentAt(placement, reference), art);
        ASSERT_EQ(host_(slot::reorderArt, art, placement, reference), outcome(works));
        if (works) {
            model_.detach(art);
            model_.insert(art, placement, reference);
        }
    }

    void dispose() {
        const Art art = anyArt();
        const bool works = model_.has(art) && art != root_;
        ASSERT_EQ(host_(slot::disposeArt, art), outcome(works));
        if (works) {
            for (const auto& [other, node] : model_.nodes) {
                if (model_.within(other, art)) {
                    gone_.push_back(other);
                }
            }
            model_.detach(art);
            model_.erase(art);
        }
    }

    void duplicate() {
        const Art art = anyArt();
        const Placement placement = any(placements);
        const Art reference = anyArt();
        const bool works =
            model_.has(art) && model_.takes(model_.nodes.at(art).kind, placement, reference);
        Art copy = Art::null;
        ASSERT_EQ(host_(slot::duplicateArt, art, placement, reference, &copy), outcome(works));
        if (works) {
            const auto before = model_.nodes;
            adopt(before, art, copy);
            model_.insert(copy, placement, reference);
        }
    }

    /// Takes a copy's handles from the document, its shape from the model of the original.
    void adopt(const std::map<Art, Model::Node>& before, Art original, Art copy) {
        ASSERT_FALSE(model_.has(copy));
        const Model::Node& node = before.at(original);
        model_.nodes[copy] = {.kind = node.kind, .clipped = node.clipped, .source = node.source};
        Art copied = Art::null;
        for (const Art child : before.at(original).children) {
            copied = copied == Art::null ? host_.document.firstChild(copy)
                                         : host_.document.nextSibling(copied);
            ASSERT_NE(copied, Art::null);
            adopt(before, child, copied);
            model_.nodes.at(copied).parent = copy;
            model_.nodes.at(copy).children.push_back(copied);
        }
    }

    void clip() {
        const Art art = anyArt();
        const bool works = model_.has(art) && model_.nodes.at(art).kind == ArtKind::group;
        const bool clipped = random_() % 2 == 0;
        ASSERT_EQ(host_(slot::setGroupClipped, art, clipped), outcome(works));
        if (works) {
            model_.nodes.at(art).clipped = clipped;
        }
    }

    void tag() {
        const Art art = anyArt();
        const auto number = static_cast<std::int32_t>(random_() % 1000);
        const ArtSource source{number, std::int64_t{number} << 40, number};
        const bool works = model_.has(art);
        ASSERT_EQ(host_(slot::setArtSource, art, &source), outcome(works));
        if (works) {
            model_.nodes.at(art).source = source;
        }
    }

    void compare() {
        const Document& document = host_.document;
        for (const auto& [art, node] : model_.nodes) {
            ArtKind kind{};
            ASSERT_EQ(host_(slot::getArtType, art, &kind), HostError::none);
            ASSERT_EQ(kind, node.kind);
            ASSERT_EQ(document.parent(art), node.parent);
            ArtSource source{1, 2, 3};
            ASSERT_EQ(host_(slot::getArtSource, art, &source), HostError::none);
            ASSERT_EQ(source, node.source);
            std::int32_t count = 0;
            ASSERT_EQ(host_(slot::getPathSegmentCount, art, &count),
                      outcome(kind == ArtKind::path));
            ASSERT_EQ(host_(slot::setPathSegmentCount, art, 1), outcome(kind == ArtKind::path));
            Art child{};
            if (kind != ArtKind::group && kind != ArtKind::compound) {
                // A text object is its own path, which is asked for art and has none.
                ASSERT_EQ(host_(slot::getFirstChild, art, &child), outcome(kind == ArtKind::text));
                ASSERT_EQ(child, Art::null);
                continue;
            }
            std::vector<Art> forward;
            ASSERT_EQ(host_(slot::getFirstChild, art, &child), HostError::none);
            while (child != Art::null) {
                forward.push_back(child);
                ASSERT_EQ(host_(slot::getNextSibling, child, &child), HostError::none);
            }
            ASSERT_EQ(forward, node.children);
            std::vector<Art> backward;
            for (child = document.lastChild(art); child != Art::null;
                 child = document.previousSibling(child)) {
                backward.push_back(child);
            }
            ASSERT_TRUE(std::ranges::equal(forward.rbegin(), forward.rend(), backward.begin(),
                                           backward.end()));
            std::uint8_t clipped = 9;
            ASSERT_EQ(host_(slot::getGroupClipped, art, &clipped), outcome(kind == ArtKind::group));
            ASSERT_TRUE(kind != ArtKind::group || clipped == node.clipped);
        }
    }

    HostTable host_;
    Art root_ = host_.document.layerArt(host_.document.firstLayer());
    Model model_{root_};
    std::vector<Art> gone_;
    std::mt19937 random_{GetParam()};
};

TEST_P(TreeAgainstModel, anySequenceOfOperations) {
    for (int step = 0; step < 4000; ++step) {
        const unsigned choice = random_() % 16;
        if (choice < 7) {
            make();
        } else if (choice < 10) {
            move();
        } else if (choice < 12) {
            dispose();
        } else if (choice < 14 && model_.nodes.size() < 500) {
            duplicate();
        } else if (choice == 14) {
            tag();
        } else {
            clip();
        }
        if (HasFatalFailure()) {
            return;
        }
        if (step % 40 == 0) {
            ASSERT_NO_FATAL_FAILURE(compare()) << "after step " << step;
        }
    }
    compare();
}

INSTANTIATE_TEST_SUITE_P(seeds, TreeAgainstModel, testing::Range(1u, 7u));

class TreeTest : public testing::Test {
protected:
    /// Groups inside one another, `count` of them below `top`; the deepest is returned.
    Art nest(Art top, int count) {
        for (int i = 0; i < count; ++i) {
            top = host_.make(ArtKind::group, Placement::inside, top);
        }
        return top;
    }

    HostTable host_;
    Art root_ = host_.document.layerArt(host_.document.firstLayer());
};

TEST_F(TreeTest, aHandleIsNeverGoodAgain) {
    std::vector<Art> disposed;
    for (int i = 0; i < 1000; ++i) {
        const Art art = host_.make(ArtKind::path, Placement::inside, root_);
        ASSERT_FALSE(std::ranges::find(disposed, art) != disposed.end());
        ASSERT_EQ(host_(slot::disposeArt, art), HostError::none);
        disposed.push_back(art);
    }
    std::int32_t count = 0;
    for (const Art art : disposed) {
        ASSERT_EQ(host_(slot::getPathSegmentCount, art, &count), HostError::failed);
        ASSERT_EQ(host_(slot::disposeArt, art), HostError::failed);
        ASSERT_EQ(host_(slot::reorderArt, art, Placement::inside, root_), HostError::failed);
    }
}

TEST_F(TreeTest, refusesWhatIsNoKindOrPlacement) {
    Art made = root_;
    for (const int kind : {0, 5, 6, 8, -1}) {
        EXPECT_EQ(host_(slot::newArt, static_cast<ArtKind>(kind), Placement::inside, root_, &made),
                  HostError::failed);
        EXPECT_EQ(made, Art::null);
    }
    for (const int placement : {0, 4, -1}) {
        EXPECT_EQ(
            host_(slot::newArt, ArtKind::group, static_cast<Placement>(placement), root_, &made),
            HostError::failed);
    }
    EXPECT_EQ(host_(slot::newArt, ArtKind::group, Placement::inside, root_, nullptr),
              HostError::failed);
    EXPECT_EQ(host_.document.firstChild(root_), Art::null);
}

TEST_F(TreeTest, nestsAsDeepAsAllowedAndNoDeeper) {
    const Art deepest = nest(root_, artworkNesting - 1);
    Art made{};
    EXPECT_EQ(host_(slot::newArt, ArtKind::path, Placement::inside, deepest, &made),
              HostError::failed);
    EXPECT_EQ(host_(slot::newArt, ArtKind::path, Placement::behind, deepest, &made),
              HostError::none);

    const Art two = host_.make(ArtKind::group, Placement::inside, root_);
    nest(two, 1);
    EXPECT_EQ(host_(slot::reorderArt, two, Placement::behind, deepest), HostError::failed);
    EXPECT_EQ(host_(slot::duplicateArt, two, Placement::behind, deepest, &made), HostError::failed);
    EXPECT_EQ(host_(slot::reorderArt, two, Placement::inFront, host_.document.parent(deepest)),
              HostError::none);
}

TEST_F(TreeTest, depthIsKnownAfterMovesAndCopies) {
    const Art chain = host_.make(ArtKind::group, Placement::inside, root_);
    const Art end = nest(chain, 2000);
    const Art place = nest(root_, 2000);
    ASSERT_EQ(host_(slot::reorderArt, chain, Placement::inside, place), HostError::none);
    Art copy{};
    ASSERT_EQ(host_(slot::duplicateArt, chain, Placement::inside, place, &copy), HostError::none);
    for (Art deepest : {end, copy}) {
        while (host_.document.firstChild(deepest) != Art::null) {
            deepest = host_.document.firstChild(deepest);
        }
        deepest = nest(deepest, artworkNesting - 4002);
        Art made{};
        EXPECT_EQ(host_(slot::newArt, ArtKind::group, Placement::inside, deepest, &made),
                  HostError::failed);
    }
}

TEST_F(TreeTest, refusesSourcesWithoutMeaning) {
    const ArtSource good{5, 5, 0};
    ASSERT_EQ(host_(slot::setArtSource, root_, &good), HostError::none);
    for (const ArtSource& bad :
         {ArtSource{-1, 5, 0}, ArtSource{5, 4, 0}, ArtSource{5, 9, -1}, ArtSource{}}) {
        EXPECT_EQ(host_(slot::setArtSource, root_, &bad), HostError::failed);
    }
    EXPECT_EQ(host_(slot::setArtSource, root_, nullptr), HostError::failed);
    EXPECT_EQ(host_(slot::getArtSource, root_, nullptr), HostError::failed);
    EXPECT_EQ(host_.document.source(root_), good);
}

/// What art has beside its node goes with it, and costs little more than itself.
TEST_F(TreeTest, sourcesTakeTheirOwnSize) {
    constexpr std::int32_t count = 120'000;
    std::vector<Art> paths;
    for (std::int32_t i = 0; i < count; ++i) {
        paths.push_back(host_.make(ArtKind::path, Placement::inside, root_));
    }
    const std::int64_t before = host_.document.budget().used();
    for (std::int32_t i = 0; i < count; ++i) {
        host_.document.setSource(paths[static_cast<std::size_t>(i)], {i, i + 1, i});
    }
    EXPECT_LT(host_.document.budget().used() - before, count * 49 / 2);
    for (const Art path : paths) {
        host_.document.dispose(path);
    }
    const Art again = host_.make(ArtKind::path, Placement::inside, root_);
    EXPECT_EQ(host_.document.source(again), std::nullopt);
    EXPECT_LT(host_.document.budget().used() - before, 10'000);
}

TEST_F(TreeTest, aCopyThatDoesNotFitLeavesNothing) {
    HostTable small(std::int64_t{8} << 20);
    const Art root = small.document.layerArt(small.document.firstLayer());
    const Art group = small.make(ArtKind::group, Placement::inside, root);
    Art copy = group;
    HostError error = HostError::none;
    for (int doubling = 0; doubling < 30 && error == HostError::none; ++doubling) {
        error = small(slot::duplicateArt, group, Placement::inside, group, &copy);
    }
    EXPECT_EQ(error, HostError::failed);
    EXPECT_EQ(copy, Art::null);
    EXPECT_NE(small.scope.failure().find("CORVANE_ART_MB"), std::string::npos);
    EXPECT_LE(small.document.budget().used(), small.document.budget().limit());
    EXPECT_EQ(small(slot::newArt, ArtKind::path, Placement::inside, root, &copy), HostError::none)
        << "what the failed copy took is free again";
}

} // namespace
} // namespace corvane
