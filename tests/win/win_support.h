// Shared pieces of the Windows tests: the run's data source, box contents
// with their item data, hidden boxes, a connected fixture, and what a test
// reads afterwards (query rows, files, the library's settings).
#pragma once

#include <kodbc/kodbc.h>
#include <korvel/korvel32.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <initializer_list>
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
    return GetClassNameA(box, cls, sizeof cls) && _stricmp(cls, "ComboBox") == 0;
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

// Whether a data source answers, asked past the library so that no error
// is shown.
inline bool Answers(const std::string &dsn) {
    SQLHENV env = nullptr;
    SQLHDBC dbc = nullptr;
    const bool ok = SQL_SUCCEEDED(SQLAllocEnv(&env)) && SQL_SUCCEEDED(SQLAllocConnect(env, &dbc)) &&
                    SQL_SUCCEEDED(SQLConnect(dbc, reinterpret_cast<SQLCHAR *>(const_cast<char *>(dsn.c_str())),
                                             SQL_NTS, nullptr, 0, nullptr, 0));
    if (ok) SQLDisconnect(dbc);
    if (dbc) SQLFreeConnect(dbc);
    if (env) SQLFreeEnv(env);
    return ok;
}

// The rows of a query, columns joined by "|", NULL as "-".
inline std::vector<std::string> QueryRows(SQLHDBC hdbc, const std::string &sql) {
    std::vector<std::string> rows;
    SQLHSTMT stmt = nullptr;
    if (!SQL_SUCCEEDED(SQLAllocStmt(hdbc, &stmt))) return rows;
    SQLSMALLINT columns = 0;
    if (SQL_SUCCEEDED(SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql.c_str())), SQL_NTS)) &&
        SQL_SUCCEEDED(SQLNumResultCols(stmt, &columns))) {
        while (SQL_SUCCEEDED(SQLFetch(stmt))) {
            std::string row;
            for (SQLUSMALLINT column = 1; column <= columns; ++column) {
                char text[100] = {};
                SQLLEN indicator = 0;
                SQLGetData(stmt, column, SQL_C_CHAR, text, sizeof text, &indicator);
                row += (column > 1 ? "|" : "") + std::string(indicator == SQL_NULL_DATA ? "-" : text);
            }
            rows.push_back(row);
        }
    }
    SQLFreeStmt(stmt, SQL_DROP);
    return rows;
}

// A file of the temporary folder; none is there yet.
inline std::string TempFile(const std::string &name) {
    char dir[MAX_PATH] = {};
    GetTempPathA(MAX_PATH, dir);
    const std::string path = dir + name;
    DeleteFileA(path.c_str());
    return path;
}

// The bytes of a file; empty when it cannot be read.
inline std::string FileText(const std::string &path) {
    std::string text;
    if (std::FILE *in = std::fopen(path.c_str(), "rb")) {
        char chunk[512];
        for (std::size_t n; (n = std::fread(chunk, 1, sizeof chunk, in)) > 0;) text.append(chunk, n);
        std::fclose(in);
    }
    return text;
}

// The library's settings in the registry: a text below a section of its key.
inline constexpr char kSettingsKey[] = "Software\\Korvel Software\\Kodbc";
inline std::string Setting(const char *section, const char *name, const char *missing = "") {
    char value[1100] = {};
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kSettingsKey, 0, section, name, missing, value, sizeof value);
    return value;
}

// The boxes, and a connection to a data source: the run's, or the one
// Dsn() names (a server the run has not started skips the test). The
// tables it owns are dropped when it starts and when it ends.
class ConnectedTest : public BoxesTest {
protected:
    virtual std::string Dsn() const { return DataSource(); }
    void SetUp() override {
        BoxesTest::SetUp();
        const std::string dsn = Dsn();
        if (dsn != DataSource() && !Answers(dsn)) GTEST_SKIP() << dsn << " cannot be connected (no servers in this run)";
        DataSourceRecord source{};
        lstrcpynA(source.DataSourceName, dsn.c_str(), sizeof source.DataSourceName);
        ASSERT_EQ(Kodbc_ConnectDataSource(&source, &henv_, &hdbc_), KODBC_CONNECTED) << dsn;
    }
    void TearDown() override {
        if (hdbc_)
            for (const std::string &table : owned_) Run("DROP " + table);
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
    // Drops these tables now and again when the test ends; "VIEW name" or
    // "SCHEMA name CASCADE" for other objects.
    void OwnTables(std::initializer_list<std::string> tables) {
        for (const std::string &table : tables) {
            owned_.push_back(table.find(' ') != std::string::npos ? table : "TABLE " + table);
            Run("DROP " + owned_.back());
        }
    }
    std::vector<std::string> Query(const std::string &sql) { return QueryRows(hdbc_, sql); }
    // Whether this run's database is up (fixture set up, not skipped).
    bool Ready() { return !HasFatalFailure() && !IsSkipped(); }

    SQLHENV henv_ = nullptr;
    SQLHDBC hdbc_ = nullptr;

private:
    std::vector<std::string> owned_;
};

} // namespace wintest
