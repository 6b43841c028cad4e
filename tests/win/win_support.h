// Shared pieces of the Windows tests: the run's data source, box contents
// with their item data, hidden boxes and a connected fixture.
#pragma once

#include <kodbc/kodbc.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <ostream>
#include <string>
#include <vector>

namespace wintest {

// The data source of the run (KODBC_TEST_DSN, else the private SQLite one).
inline const char *DataSource() {
    const char *dsn = std::getenv("KODBC_TEST_DSN");
    return dsn && *dsn ? dsn : "kodbc_sqlite";
}

inline bool IsCombo(HWND box) {
    char cls[32] = {};
    GetClassNameA(box, cls, sizeof cls);
    return _stricmp(cls, "ComboBox") == 0;
}

// One line of a list or combo box as the box holds it.
struct BoxLine {
    std::string text;
    LPARAM data;
    bool operator==(const BoxLine &other) const { return text == other.text && data == other.data; }
};
inline std::ostream &operator<<(std::ostream &os, const BoxLine &line) {
    return os << '"' << line.text << "\"/" << line.data;
}

inline std::vector<BoxLine> BoxLines(HWND box) {
    const bool combo = IsCombo(box);
    int count = static_cast<int>(SendMessageA(box, combo ? CB_GETCOUNT : LB_GETCOUNT, 0, 0));
    std::vector<BoxLine> out;
    for (int i = 0; i < count; ++i) {
        char text[300] = {};
        SendMessageA(box, combo ? CB_GETLBTEXT : LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        out.push_back({text, SendMessageA(box, combo ? CB_GETITEMDATA : LB_GETITEMDATA, static_cast<WPARAM>(i), 0)});
    }
    return out;
}

// The texts of a box's lines.
inline std::vector<std::string> BoxTexts(HWND box) {
    std::vector<std::string> out;
    for (const BoxLine &line : BoxLines(box)) out.push_back(line.text);
    return out;
}

// A hidden, unsorted list box and drop-down list combo box for the test.
class BoxesTest : public ::testing::Test {
protected:
    void SetUp() override {
        list_ = CreateWindowA("LISTBOX", "", WS_POPUP | LBS_NOTIFY, 0, 0, 200, 200, nullptr, nullptr, nullptr, nullptr);
        combo_ = CreateWindowA("COMBOBOX", "", WS_POPUP | CBS_DROPDOWNLIST, 0, 0, 200, 200, nullptr, nullptr, nullptr,
                               nullptr);
        ASSERT_TRUE(list_ && combo_);
    }
    void TearDown() override {
        if (list_) DestroyWindow(list_);
        if (combo_) DestroyWindow(combo_);
    }
    HWND list_ = nullptr, combo_ = nullptr;
};

// The boxes, and a connection to the run's data source.
class ConnectedTest : public BoxesTest {
protected:
    void SetUp() override {
        BoxesTest::SetUp();
        DataSourceRecord source{};
        lstrcpynA(source.DataSourceName, DataSource(), sizeof source.DataSourceName);
        ASSERT_EQ(Kodbc_ConnectDataSource(&source, &henv_, &hdbc_), KODBC_CONNECTED) << DataSource();
    }
    void TearDown() override {
        Kodbc_DisconnectDataSource(&henv_, &hdbc_);
        BoxesTest::TearDown();
    }
    // Runs a statement past the library; true when it succeeded.
    bool Run(const std::string &sql) {
        SQLHSTMT stmt = nullptr;
        if (!hdbc_ || !SQL_SUCCEEDED(SQLAllocStmt(hdbc_, &stmt))) return false;
        SQLRETURN rc = SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql.c_str())), SQL_NTS);
        SQLFreeStmt(stmt, SQL_DROP);
        return SQL_SUCCEEDED(rc);
    }
    SQLHENV henv_ = nullptr;
    SQLHDBC hdbc_ = nullptr;
};

} // namespace wintest
