// The catalogue into real list and combo boxes: each filler replaces what
// the box held (column entries go behind it). Which entries are listed is
// the core's (tests/native/catalog_tables_test.cpp, catalog_columns_test.cpp).
#include "robot.h"

#include <algorithm>

namespace {

using namespace wintest;
using Texts = std::vector<std::string>;

class CatalogBoxes : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        if (!Ready()) return;
        OwnTables({"kc_win_boxes"});
        ASSERT_TRUE(Run("CREATE TABLE kc_win_boxes (id INTEGER NOT NULL, txt VARCHAR(10))"));
        for (HWND box : {list_, combo_}) Korvel_AddBoxEntry(box, "alt", 0, -1, 0);
    }
};

TEST_F(CatalogBoxes, EachFillerReplacesTheBoxesEntries) {
    EXPECT_EQ(Kodbc_FillTablesBox(hdbc_, KODBC_OBJECT_TABLE, list_), 0);
    const Texts tables = BoxTexts(list_);
    EXPECT_NE(std::find(tables.begin(), tables.end(), "kc_win_boxes"), tables.end());
    EXPECT_EQ(std::find(tables.begin(), tables.end(), "alt"), tables.end());
    EXPECT_EQ(Kodbc_FillTablesBoxExtended(hdbc_, KODBC_OBJECT_TABLE, nullptr, KODBC_TABLES_BOX_OPTION8, combo_), 0);
    EXPECT_EQ(BoxTexts(combo_), tables);

    EXPECT_EQ(Kodbc_FillFieldsBox(hdbc_, "kc_win_boxes", 0, list_), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_AddColumnsToBox(hdbc_, nullptr, "kc_win_boxes", list_,
                                    KODBC_COLUMNS_TABLE_PREFIX | KODBC_COLUMNS_NOT_NULL),
              KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_AddColumnsToBox(hdbc_, nullptr, "kc_win_boxes", nullptr, 0), KODBC_SUCCESS) << "no box";
    Kodbc_FillFormsBox(hdbc_, list_);  // forms and reports leave the box alone
    Kodbc_FillReportsBox(hdbc_, list_);
    EXPECT_EQ(BoxTexts(list_), (Texts{"id", "txt", "kc_win_boxes.id"}));

    EXPECT_EQ(Kodbc_FillSchemataBox(hdbc_, combo_), KODBC_SUCCESS);
    const Texts schemata = BoxTexts(combo_);
    EXPECT_EQ(std::find(schemata.begin(), schemata.end(), "alt"), schemata.end());
    EXPECT_EQ(Kodbc_FillSchemataBox(nullptr, combo_), KODBC_FAILURE);
}

} // namespace
