// Table administration's column list: which row a column stands in and
// which row is selected once columns were removed.
#include "tabledesign/table_admin.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Names = std::vector<std::string>;
using kodbc::tabledesign::AdminRowAfterDrop;
using kodbc::tabledesign::AdminRowOf;

TEST(TableAdminList, RowOfANameInAnyCase) {
    const Names columns{"Nr", "Name", "Ort"};
    EXPECT_EQ(AdminRowOf(columns, "name"), 1);
    EXPECT_EQ(AdminRowOf(columns, "ORT"), 2);
    EXPECT_EQ(AdminRowOf(columns, "Nam"), -1);
}

TEST(TableAdminList, RowSelectedAfterADrop) {
    const struct {
        const char *what;
        std::vector<int> rows;
        Names names, left;
        int expected;
    } cases[] = {
        {"the column that moved up", {1}, {"Name"}, {"Nr", "Ort", "Tel"}, 1},
        {"the first that went (Nr was kept)", {0, 1, 3}, {"Nr", "Name", "Tel"}, {"Nr", "Ort", "Fax"}, 1},
        {"the last row when the list ends before", {2, 3}, {"Ort", "Tel"}, {"Nr", "Name"}, 1},
        {"none left", {0}, {"Nr"}, {}, -1},
    };
    for (const auto &c : cases) EXPECT_EQ(AdminRowAfterDrop(c.rows, c.names, c.left), c.expected) << c.what;
}

} // namespace
