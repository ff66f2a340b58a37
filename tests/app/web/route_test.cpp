#include "app/web/http/route.h"

#include <gtest/gtest.h>
#include <string>

namespace corvane {
namespace {

using Kind = Route::Kind;

TEST(Route, IsOneOfATable) {
    const std::string token = "0123456789abcdef0123456789abcdef";
    struct Row {
        std::string target;
        Kind kind;
        int file;
        int page;
    };
    for (const Row& row :
         {Row{"/", Kind::page, 0, 0}, Row{"/app.js", Kind::page, 0, 0},
          Row{"/api/files/3/pages/2/thumbnail", Kind::thumbnail, 3, 2},
          Row{"/api/files", Kind::files, 0, 0}, Row{"/api/files/12", Kind::info, 12, 0},
          Row{"/api/files/1/log", Kind::log, 1, 0}, Row{"/api/files/1/revert", Kind::revert, 1, 0},
          Row{"/api/files/2/pages/30/open", Kind::open, 2, 30},
          Row{"/api/files/2/pages/3/trial?force=yes&mend=yes", Kind::trial, 2, 3},
          Row{"/api/files/2/pages/3/save", Kind::save, 2, 3},
          Row{"/api/files/2/pages/3/picture?update=0", Kind::picture, 2, 3},
          Row{"/api/artworks/" + token, Kind::artwork, 0, 0},
          Row{"/api/alive", Kind::alive, 0, 0}}) {
        const auto route = routeOf(row.target);
        ASSERT_TRUE(route) << row.target;
        EXPECT_EQ(route->kind, row.kind) << row.target;
        EXPECT_EQ(route->file, row.file) << row.target;
        EXPECT_EQ(route->page, row.page) << row.target;
    }
    EXPECT_EQ(routeOf("/app.css")->name, "app.css");
    EXPECT_EQ(routeOf("/api/artworks/" + token)->token, token);
    EXPECT_EQ(routeOf("/api/files/1/pages/1/picture?update=7")->update, 7);
    EXPECT_FALSE(routeOf("/api/files/1/pages/1/picture")->update);
    const auto save = routeOf("/api/files/1/pages/1/save?force=yes");
    EXPECT_TRUE(save->force && !save->mend && save->posts && save->hasBody);
}

TEST(Route, IsNothingElse) {
    for (const std::string target : {"",
                                     "app.js",
                                     "//",
                                     "/index.html",
                                     "/app.js/",
                                     "/api",
                                     "/api/files/",
                                     "/api/files/0",
                                     "/api/files/-1",
                                     "/api/files/1x",
                                     "/api/files/99999999999",
                                     "/api/files/1/pages/1",
                                     "/api/files/1/pages/0/open",
                                     "/api/files/..",
                                     "/../etc/passwd",
                                     "/api/files/../../x",
                                     "/api/artworks/..",
                                     "/api/artworks/0123456789abcdef0123456789abcdeg",
                                     "/api/artworks/0123456789ABCDEF0123456789ABCDEF",
                                     "/api/artworks/0123",
                                     "/api/artworks/../0123456789abcdef0123456789abcdef",
                                     "/%61pp.js",
                                     "/api/files/1?update=1",
                                     "/api/files/1/pages/1/picture?update=",
                                     "/api/files/1/pages/1/picture?update=-1",
                                     "/api/files/1/pages/1/save?force=no",
                                     "/api/files/1/pages/1/save?output=/etc/x",
                                     "/?",
                                     "/?x=1",
                                     "http://127.0.0.1/"}) {
        EXPECT_FALSE(routeOf(target)) << target;
    }
}

} // namespace
} // namespace corvane
