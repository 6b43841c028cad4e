// The catalogue into real list and combo boxes: tables with the system
// tables hidden, fields, column entries, schemata, and the form and report
// boxes that stay as they are.
#include <kodbc/kodbc.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

const char *DataSource() {
    const char *dsn = std::getenv("KODBC_TEST_DSN");
    return dsn && *dsn ? dsn : "kodbc_sqlite";
}

std::vector<std::string> Entries(HWND box) {
    char cls[32] = {};
    GetClassNameA(box, cls, sizeof cls);
    const bool combo = _stricmp(cls, "ComboBox") == 0;
    int count = static_cast<int>(SendMessageA(box, combo ? CB_GETCOUNT : LB_GETCOUNT, 0, 0));
    std::vector<std::string> out;
    for (int i = 0; i < count; ++i) {
        char text[300] = {};
        SendMessageA(box, combo ? CB_GETLBTEXT : LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        out.emplace_back(text);
    }
    return out;
}

bool Has(const std::vector<std::string> &items, const char *name) {
    for (const auto &item : items)
        if (item == name) return true;
    return false;
}

class CatalogBoxes : public ::testing::Test {
protected:
    void SetUp() override {
        DataSourceRecord source{};
        std::strncpy(source.DataSourceName, DataSource(), sizeof source.DataSourceName - 1);
        ASSERT_EQ(Kodbc_ConnectDataSource(&source, &henv_, &hdbc_), KODBC_CONNECTED);
        const char quote = Kodbc_GetDelimiter(hdbc_);
        hidden_ = std::string(1, quote) + "USysKcWin" + quote;
        Run("DROP TABLE kc_win_boxes");
        Run(("DROP TABLE " + hidden_).c_str());
        Run("CREATE TABLE kc_win_boxes (id INTEGER NOT NULL, txt VARCHAR(10))");
        Run(("CREATE TABLE " + hidden_ + " (id INTEGER)").c_str());
        list_ = CreateWindowA("LISTBOX", "", WS_POPUP, 0, 0, 200, 200, nullptr, nullptr, nullptr, nullptr);
        combo_ = CreateWindowA("COMBOBOX", "", WS_POPUP | CBS_DROPDOWNLIST, 0, 0, 200, 200, nullptr, nullptr,
                               nullptr, nullptr);
        ASSERT_TRUE(list_ && combo_);
    }
    void TearDown() override {
        if (list_) DestroyWindow(list_);
        if (combo_) DestroyWindow(combo_);
        if (hdbc_) {
            Run("DROP TABLE kc_win_boxes");
            Run(("DROP TABLE " + hidden_).c_str());
        }
        Kodbc_DisconnectDataSource(&henv_, &hdbc_);
    }
    void Run(const char *sql) {
        SQLHSTMT stmt = nullptr;
        if (!SQL_SUCCEEDED(SQLAllocStmt(hdbc_, &stmt))) return;
        SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql)), SQL_NTS);
        SQLFreeStmt(stmt, SQL_DROP);
    }
    SQLHENV henv_ = nullptr;
    SQLHDBC hdbc_ = nullptr;
    HWND list_ = nullptr, combo_ = nullptr;
    std::string hidden_;  // the system table's name, quoted for the driver
};

TEST_F(CatalogBoxes, TablesBoxHidesSystemTablesUnlessAsked) {
    EXPECT_EQ(Kodbc_FillTablesBox(hdbc_, KODBC_OBJECT_TABLE, list_), 0);
    auto tables = Entries(list_);
    EXPECT_TRUE(Has(tables, "kc_win_boxes"));
    EXPECT_FALSE(Has(tables, "USysKcWin"));
    EXPECT_EQ(Kodbc_FillTablesBoxExtended(hdbc_, KODBC_OBJECT_TABLE | KODBC_OBJECT_SYSTEM, nullptr,
                                          KODBC_TABLES_BOX_OPTION8, combo_),
              0);
    EXPECT_TRUE(Has(Entries(combo_), "USysKcWin"));
    // A second fill replaces the entries.
    EXPECT_EQ(Kodbc_FillTablesBox(hdbc_, KODBC_OBJECT_TABLE, list_), 0);
    EXPECT_EQ(Entries(list_).size(), tables.size());
}

TEST_F(CatalogBoxes, FieldsBoxAndColumnEntries) {
    EXPECT_EQ(Kodbc_FillFieldsBox(hdbc_, "kc_win_boxes", 0, list_), KODBC_SUCCESS);
    EXPECT_EQ(Entries(list_), (std::vector<std::string>{"id", "txt"}));
    // Column entries are added behind what the box holds.
    EXPECT_EQ(Kodbc_AddColumnsToBox(hdbc_, nullptr, "kc_win_boxes", list_,
                                    KODBC_COLUMNS_TABLE_PREFIX | KODBC_COLUMNS_NOT_NULL),
              KODBC_SUCCESS);
    EXPECT_EQ(Entries(list_), (std::vector<std::string>{"id", "txt", "kc_win_boxes.id"}));
    EXPECT_EQ(Kodbc_AddColumnsToBox(hdbc_, nullptr, "kc_win_boxes", nullptr, 0), KODBC_SUCCESS);
    EXPECT_EQ(Kodbc_AddColumnsToBox(hdbc_, nullptr, " ", list_, 0), KODBC_SUCCESS);
    EXPECT_EQ(Entries(list_).size(), 3u);
}

TEST_F(CatalogBoxes, SchemataBoxHoldsEachSchemaOnce) {
    SendMessageA(combo_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>("old entry"));
    EXPECT_EQ(Kodbc_FillSchemataBox(hdbc_, combo_), KODBC_SUCCESS);
    auto schemata = Entries(combo_);
    EXPECT_FALSE(Has(schemata, "old entry"));
    if (Kodbc_GetSchemaUsage(hdbc_) == 0) EXPECT_TRUE(schemata.empty());
    for (std::size_t i = 0; i < schemata.size(); ++i)
        for (std::size_t j = i + 1; j < schemata.size(); ++j) EXPECT_NE(schemata[i], schemata[j]);
    EXPECT_EQ(Kodbc_FillSchemataBox(nullptr, combo_), KODBC_FAILURE);
}

TEST_F(CatalogBoxes, FormsAndReportsBoxesStayAsTheyAre) {
    SendMessageA(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>("kept"));
    Kodbc_FillFormsBox(hdbc_, list_);
    Kodbc_FillReportsBox(hdbc_, list_);
    EXPECT_EQ(Entries(list_), (std::vector<std::string>{"kept"}));
}

} // namespace
