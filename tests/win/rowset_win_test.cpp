// Result sets into real list views and boxes, read back with messages:
// one item per row replacing the old ones, the first column as item data
// (a number, or a copy of the text) when asked, and in a box the second
// column as each line's item data.
#include "robot.h"

#include <commctrl.h>

namespace {

using namespace wintest;
using Texts = std::vector<std::string>;

constexpr char kSelect[] = "SELECT id, name, city FROM kw_rowset ORDER BY id";

class RowSetControls : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        if (!Ready()) return;
        INITCOMMONCONTROLSEX init{sizeof init, ICC_LISTVIEW_CLASSES};
        InitCommonControlsEx(&init);
        OwnTables({"kw_rowset"});
        ASSERT_TRUE(Run("CREATE TABLE kw_rowset (id INTEGER, name VARCHAR(20), city VARCHAR(20))"));
        ASSERT_TRUE(Run("INSERT INTO kw_rowset VALUES (7, 'Meier', 'Koeln'), (12, 'Schulz', NULL)"));
        view_ = CreateWindowA(WC_LISTVIEWA, "", WS_POPUP | LVS_REPORT, 0, 0, 300, 200, nullptr, nullptr, nullptr,
                              nullptr);
        ASSERT_TRUE(view_);
        LVCOLUMNA column = {};
        column.mask = LVCF_WIDTH;
        column.cx = 80;
        for (int c = 0; c < 3; ++c) SendMessageA(view_, LVM_INSERTCOLUMNA, c, reinterpret_cast<LPARAM>(&column));
    }
    void TearDown() override {
        if (view_) DestroyWindow(view_);
        ConnectedTest::TearDown();
    }
    LPARAM ItemData(int row) {
        LVITEMA item = {};
        item.mask = LVIF_PARAM;
        item.iItem = row;
        SendMessageA(view_, LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
        return item.lParam;
    }
    HWND view_ = nullptr;
};

TEST_F(RowSetControls, ListViewGetsOneItemPerRowAndTheFirstColumnAsItemDataWhenAsked) {
    ASSERT_EQ(OdbcEh_SelectRowSetToListView(nullptr, hdbc_, kSelect, view_, nullptr, 0), 1);
    EXPECT_EQ(ListViewRows(view_, 3), (Texts{"7|Meier|Koeln", "12|Schulz|"}));
    // A second fill replaces the items; the display then starts at the second column.
    ASSERT_EQ(OdbcEh_SelectRowSetToListView(nullptr, hdbc_, kSelect, view_, nullptr, KODBC_ROWSET_ITEMDATA_NUMBER), 1);
    EXPECT_EQ(ListViewRows(view_, 2), (Texts{"Meier|Koeln", "Schulz|"}));
    EXPECT_EQ(ItemData(0), 7);
    EXPECT_EQ(ItemData(1), 12);

    ASSERT_EQ(OdbcEh_SelectRowSetToListView(nullptr, hdbc_, kSelect, view_, nullptr, KODBC_ROWSET_ITEMDATA_TEXT), 1);
    auto *copy = reinterpret_cast<char *>(ItemData(1));
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy, "12");
    for (int row = 0; row < 2; ++row) HeapFree(GetProcessHeap(), 0, reinterpret_cast<void *>(ItemData(row)));
}

TEST_F(RowSetControls, BoxTakesTheFirstColumnAndTheSecondAsItemData) {
    Korvel_AddBoxEntry(list_, "alt", 0, -1, 0);
    ASSERT_EQ(OdbcEh_SelectRowSetToBox(nullptr, hdbc_, "SELECT name, id FROM kw_rowset ORDER BY id", list_, nullptr, 0),
              1);
    EXPECT_EQ(BoxLines(list_), (std::vector<BoxLine>{{"Meier", 7}, {"Schulz", 12}}));
    EXPECT_EQ(OdbcEh_SelectRowSetToBox(nullptr, hdbc_, "SELECT x FROM kw_no_table", list_, "*", 0), 2);
    EXPECT_EQ(OdbcEh_SelectRowSetToBox(nullptr, hdbc_, nullptr, list_, nullptr, 0), 2);
}

} // namespace
