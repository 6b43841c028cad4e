// Result sets into real list views and boxes, read back with messages.
#include <kodbc/kodbc.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

class RowSetControls : public ::testing::Test {
protected:
    void SetUp() override {
        INITCOMMONCONTROLSEX init{sizeof init, ICC_LISTVIEW_CLASSES};
        InitCommonControlsEx(&init);
        DataSourceRecord source{};
        const char *dsn = std::getenv("KODBC_TEST_DSN");
        std::strncpy(source.DataSourceName, dsn && *dsn ? dsn : "kodbc_sqlite", sizeof source.DataSourceName - 1);
        ASSERT_EQ(Kodbc_ConnectDataSource(&source, &henv_, &hdbc_), KODBC_CONNECTED);
        Run("DROP TABLE kw_rowset");
        Run("CREATE TABLE kw_rowset (id INTEGER, name VARCHAR(20), city VARCHAR(20))");
        Run("INSERT INTO kw_rowset VALUES (7, 'Meier', 'Koeln')");
        Run("INSERT INTO kw_rowset VALUES (12, 'Schulz', NULL)");
        view_ = CreateWindowA(WC_LISTVIEWA, "", WS_POPUP | LVS_REPORT, 0, 0, 300, 200, nullptr, nullptr, nullptr,
                              nullptr);
        box_ = CreateWindowA("LISTBOX", "", WS_POPUP, 0, 0, 200, 200, nullptr, nullptr, nullptr, nullptr);
        ASSERT_TRUE(view_ && box_);
        for (int c = 0; c < 3; ++c) {
            LVCOLUMNA column{};
            column.mask = LVCF_WIDTH;
            column.cx = 80;
            SendMessageA(view_, LVM_INSERTCOLUMNA, c, reinterpret_cast<LPARAM>(&column));
        }
    }
    void TearDown() override {
        if (view_) DestroyWindow(view_);
        if (box_) DestroyWindow(box_);
        if (hdbc_) Run("DROP TABLE kw_rowset");
        Kodbc_DisconnectDataSource(&henv_, &hdbc_);
    }
    void Run(const char *sql) {
        SQLHSTMT stmt = nullptr;
        if (!SQL_SUCCEEDED(SQLAllocStmt(hdbc_, &stmt))) return;
        SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql)), SQL_NTS);
        SQLFreeStmt(stmt, SQL_DROP);
    }
    std::string Cell(int row, int column) {
        char text[100] = {};
        LVITEMA item{};
        item.iSubItem = column;
        item.pszText = text;
        item.cchTextMax = sizeof text;
        SendMessageA(view_, LVM_GETITEMTEXTA, row, reinterpret_cast<LPARAM>(&item));
        return text;
    }
    LPARAM ItemData(int row) {
        LVITEMA item{};
        item.mask = LVIF_PARAM;
        item.iItem = row;
        SendMessageA(view_, LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
        return item.lParam;
    }
    SQLHENV henv_ = nullptr;
    SQLHDBC hdbc_ = nullptr;
    HWND view_ = nullptr, box_ = nullptr;
};

TEST_F(RowSetControls, ListViewGetsOneItemPerRowAndReplacesOldItems) {
    const char *sql = "SELECT id, name, city FROM kw_rowset ORDER BY id";
    ASSERT_EQ(OdbcEh_SelectRowSetToListView(nullptr, hdbc_, sql, view_, nullptr, 0), 1);
    ASSERT_EQ(ListView_GetItemCount(view_), 2);
    EXPECT_EQ(Cell(0, 0), "7");
    EXPECT_EQ(Cell(0, 1), "Meier");
    EXPECT_EQ(Cell(0, 2), "Koeln");
    EXPECT_EQ(Cell(1, 1), "Schulz");
    EXPECT_EQ(Cell(1, 2), "");

    // With the number flag the first column becomes the item data and the
    // display starts at the second.
    ASSERT_EQ(OdbcEh_SelectRowSetToListView(nullptr, hdbc_, sql, view_, nullptr, KODBC_ROWSET_ITEMDATA_NUMBER), 1);
    ASSERT_EQ(ListView_GetItemCount(view_), 2);
    EXPECT_EQ(Cell(0, 0), "Meier");
    EXPECT_EQ(ItemData(0), 7);
    EXPECT_EQ(ItemData(1), 12);

    ASSERT_EQ(OdbcEh_SelectRowSetToListView(nullptr, hdbc_, sql, view_, nullptr, KODBC_ROWSET_ITEMDATA_TEXT), 1);
    auto *copy = reinterpret_cast<char *>(ItemData(1));
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy, "12");
    for (int row = 0; row < 2; ++row) HeapFree(GetProcessHeap(), 0, reinterpret_cast<void *>(ItemData(row)));
}

TEST_F(RowSetControls, BoxTakesTheFirstColumnAndTheSecondAsItemData) {
    SendMessageA(box_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>("alt"));
    ASSERT_EQ(OdbcEh_SelectRowSetToBox(nullptr, hdbc_, "SELECT name, id FROM kw_rowset ORDER BY id", box_, nullptr, 0),
              1);
    ASSERT_EQ(SendMessageA(box_, LB_GETCOUNT, 0, 0), 2);
    char text[50] = {};
    SendMessageA(box_, LB_GETTEXT, 1, reinterpret_cast<LPARAM>(text));
    EXPECT_STREQ(text, "Schulz");
    EXPECT_EQ(SendMessageA(box_, LB_GETITEMDATA, 0, 0), 7);
    EXPECT_EQ(SendMessageA(box_, LB_GETITEMDATA, 1, 0), 12);

    EXPECT_EQ(OdbcEh_SelectRowSetToBox(nullptr, hdbc_, "SELECT x FROM kw_no_table", box_, "*", 0), 2);
    EXPECT_EQ(OdbcEh_SelectRowSetToBox(nullptr, hdbc_, nullptr, box_, nullptr, 0), 2);
}

} // namespace
