#include "app/cli/report/dates.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(Dates, AreShownInUtc) {
    struct Row {
        const char* date;
        const char* wanted;
    };
    for (const Row& row : {
             Row{"D:20261121090807Z", "2026-11-21 09:08:07"},
             Row{"D:20261121010000+02'30'", "2026-11-20 22:30:00"},
             Row{"D:20241231233000-01'00", "2025-01-01 00:30:00"},
             Row{"D:20240229", "2024-02-29 00:00:00"},
             Row{"19991231235959", "1999-12-31 23:59:59"},
             Row{"D:2026+01'00'", "2025-12-31 23:00:00"},
             Row{"D:20230229", ""},
             Row{"D:20261301", ""},
             Row{"D:2026112125", ""},
             Row{"D:26", ""},
             Row{"", ""},
             Row{"yesterday", ""},
         }) {
        EXPECT_EQ(utcText(row.date), row.wanted) << row.date;
    }
}

} // namespace
} // namespace corvane
