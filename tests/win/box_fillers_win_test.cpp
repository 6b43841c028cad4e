// The catalogue and result sets into real list views and boxes, read back with messages: each filler
// replaces what the control held. Which entries are listed is tests/native/catalog_test.cpp's.
#include "robot.h"

#include <commctrl.h>

#include <algorithm>

namespace {

using namespace wintest;
using Texts = std::vector<std::string>;
using BoxFillers = ConnectedTest;

// Column entries go behind what the box holds; forms and reports leave it alone.
TEST_F(BoxFillers, EachCatalogueFillerReplacesTheBoxesEntries) {
    OwnTables({"kc_win_boxes"});
    ASSERT_TRUE(Run("CREATE TABLE kc_win_boxes (id INTEGER NOT NULL, txt VARCHAR(10))"));
    for (HWND box : {list_, combo_}) Korvel_AddBoxEntry(box, "alt", 0, -1, 0);
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
    Kodbc_FillFormsBox(hdbc_, list_);
    Kodbc_FillReportsBox(hdbc_, list_);
    EXPECT_EQ(BoxTexts(list_), (Texts{"id", "txt", "kc_win_boxes.id"}));

    EXPECT_EQ(Kodbc_FillSchemataBox(hdbc_, combo_), KODBC_SUCCESS);
    const Texts schemata = BoxTexts(combo_);
    EXPECT_EQ(std::find(schemata.begin(), schemata.end(), "alt"), schemata.end());
    EXPECT_EQ(Kodbc_FillSchemataBox(nullptr, combo_), KODBC_FAILURE);
}

// A list view gets one item per row, the first column as item data (a number, or a copy of the
// text) when asked; a box the first column as text and the second as each line's item data.
TEST_F(BoxFillers, RowSetsGiveOneItemPerRowAndTheAskedColumnAsItemData) {
    OwnTables({"kw_rowset"});
    ASSERT_TRUE(Run("CREATE TABLE kw_rowset (id INTEGER, name VARCHAR(20), city VARCHAR(20))"));
    ASSERT_TRUE(Run("INSERT INTO kw_rowset VALUES (7, 'Meier', 'Koeln'), (12, 'Schulz', NULL)"));
    INITCOMMONCONTROLSEX init{sizeof init, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&init);
    HWND view = CreateWindowA(WC_LISTVIEWA, "", WS_POPUP | LVS_REPORT, 0, 0, 300, 200, nullptr, nullptr, nullptr,
                              nullptr);
    ASSERT_TRUE(view);
    LVCOLUMNA column = {};
    column.mask = LVCF_WIDTH;
    column.cx = 80;
    for (int c = 0; c < 3; ++c) SendMessageA(view, LVM_INSERTCOLUMNA, c, reinterpret_cast<LPARAM>(&column));
    auto itemData = [&](int row) {
        LVITEMA item = {};
        item.mask = LVIF_PARAM;
        item.iItem = row;
        SendMessageA(view, LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
        return item.lParam;
    };

    constexpr char kSelect[] = "SELECT id, name, city FROM kw_rowset ORDER BY id";
    ASSERT_EQ(OdbcEh_SelectRowSetToListView(nullptr, hdbc_, kSelect, view, nullptr, 0), 1);
    EXPECT_EQ(ListViewRows(view, 3), (Texts{"7|Meier|Koeln", "12|Schulz|"}));
    // A second fill replaces the items; the display then starts at the second column.
    ASSERT_EQ(OdbcEh_SelectRowSetToListView(nullptr, hdbc_, kSelect, view, nullptr, KODBC_ROWSET_ITEMDATA_NUMBER), 1);
    EXPECT_EQ(ListViewRows(view, 2), (Texts{"Meier|Koeln", "Schulz|"}));
    EXPECT_EQ(itemData(0), 7);
    EXPECT_EQ(itemData(1), 12);
    ASSERT_EQ(OdbcEh_SelectRowSetToListView(nullptr, hdbc_, kSelect, view, nullptr, KODBC_ROWSET_ITEMDATA_TEXT), 1);
    EXPECT_STREQ(reinterpret_cast<char *>(itemData(1)), "12");
    for (int row = 0; row < 2; ++row) HeapFree(GetProcessHeap(), 0, reinterpret_cast<void *>(itemData(row)));
    DestroyWindow(view);

    Korvel_AddBoxEntry(list_, "alt", 0, -1, 0);
    ASSERT_EQ(OdbcEh_SelectRowSetToBox(nullptr, hdbc_, "SELECT name, id FROM kw_rowset ORDER BY id", list_, nullptr, 0),
              1);
    EXPECT_EQ(BoxLines(list_), (std::vector<BoxLine>{{"Meier", 7}, {"Schulz", 12}}));
    EXPECT_EQ(OdbcEh_SelectRowSetToBox(nullptr, hdbc_, "SELECT x FROM kw_no_table", list_, "*", 0), 2);
    EXPECT_EQ(OdbcEh_SelectRowSetToBox(nullptr, hdbc_, nullptr, list_, nullptr, 0), 2);
}

} // namespace
