// The catalogue into real list and combo boxes: tables with the system
// tables hidden, fields, column entries, schemata, and the form and report
// boxes that stay as they are.
#include "win_support.h"

namespace {

using wintest::BoxTexts;

bool Has(const std::vector<std::string> &items, const char *name) {
    for (const auto &item : items)
        if (item == name) return true;
    return false;
}

class CatalogBoxes : public wintest::ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        if (!Ready()) return;
        const char quote = Kodbc_GetDelimiter(hdbc_);
        hidden_ = std::string(1, quote) + "USysKcWin" + quote;
        OwnTables({"kc_win_boxes", hidden_});
        ASSERT_TRUE(Run("CREATE TABLE kc_win_boxes (id INTEGER NOT NULL, txt VARCHAR(10))"));
        ASSERT_TRUE(Run("CREATE TABLE " + hidden_ + " (id INTEGER)"));
    }
    std::string hidden_;  // the system table's name, quoted for the driver
};

TEST_F(CatalogBoxes, TablesBoxHidesSystemTablesUnlessAsked) {
    EXPECT_EQ(Kodbc_FillTablesBox(hdbc_, KODBC_OBJECT_TABLE, list_), 0);
    auto tables = BoxTexts(list_);
    EXPECT_TRUE(Has(tables, "kc_win_boxes"));
    EXPECT_FALSE(Has(tables, "USysKcWin"));
    EXPECT_EQ(Kodbc_FillTablesBoxExtended(hdbc_, KODBC_OBJECT_TABLE | KODBC_OBJECT_SYSTEM, nullptr,
                                          KODBC_TABLES_BOX_OPTION8, combo_),
              0);
    EXPECT_TRUE(Has(BoxTexts(combo_), "USysKcWin"));
    // A second fill replaces the entries.
    EXPECT_EQ(Kodbc_FillTablesBox(hdbc_, KODBC_OBJECT_TABLE, list_), 0);
    EXPECT_EQ(BoxTexts(list_).size(), tables.size());
}

TEST_F(CatalogBoxes, FieldsBoxAndColumnEntries) {
    EXPECT_EQ(Kodbc_FillFieldsBox(hdbc_, "kc_win_boxes", 0, list_), KODBC_SUCCESS);
    EXPECT_EQ(BoxTexts(list_), (std::vector<std::string>{"id", "txt"}));
    // Column entries are added behind what the box holds.
    EXPECT_EQ(Kodbc_AddColumnsToBox(hdbc_, nullptr, "kc_win_boxes", list_,
                                    KODBC_COLUMNS_TABLE_PREFIX | KODBC_COLUMNS_NOT_NULL),
              KODBC_SUCCESS);
    EXPECT_EQ(BoxTexts(list_), (std::vector<std::string>{"id", "txt", "kc_win_boxes.id"}));
    EXPECT_EQ(Kodbc_AddColumnsToBox(hdbc_, nullptr, "kc_win_boxes", nullptr, 0), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_AddColumnsToBox(hdbc_, nullptr, " ", list_, 0), KODBC_SUCCESS);
    EXPECT_EQ(BoxTexts(list_).size(), 3u);
}

TEST_F(CatalogBoxes, SchemataBoxHoldsEachSchemaOnce) {
    SendMessageA(combo_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>("old entry"));
    EXPECT_EQ(Kodbc_FillSchemataBox(hdbc_, combo_), KODBC_SUCCESS);
    auto schemata = BoxTexts(combo_);
    EXPECT_FALSE(Has(schemata, "old entry"));
    if (Kodbc_GetSchemaUsage(hdbc_) == 0) {
        EXPECT_TRUE(schemata.empty());
    }
    for (std::size_t i = 0; i < schemata.size(); ++i)
        for (std::size_t j = i + 1; j < schemata.size(); ++j) EXPECT_NE(schemata[i], schemata[j]);
    EXPECT_EQ(Kodbc_FillSchemataBox(nullptr, combo_), KODBC_FAILURE);
}

TEST_F(CatalogBoxes, FormsAndReportsBoxesStayAsTheyAre) {
    SendMessageA(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>("kept"));
    Kodbc_FillFormsBox(hdbc_, list_);
    Kodbc_FillReportsBox(hdbc_, list_);
    EXPECT_EQ(BoxTexts(list_), (std::vector<std::string>{"kept"}));
}

} // namespace
