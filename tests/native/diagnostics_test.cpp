// Splitting of driver messages, display results and the tolerance test.
#include "test_support.h"

#include "internal/diagnostics.h"

#include <korvel/korvel32.h>

#include <cstdlib>

namespace kodbc::test {
namespace {

TEST(DiagnosticSplit, BracketsGiveVendorComponentDataSourceAndText) {
    const struct {
        std::string message, fields;  // vendor|component|data source|description
    } cases[] = {
        {"[unixODBC][Driver Manager][kodbc_pg]connection refused", "unixODBC|Driver Manager|kodbc_pg|connection refused"},
        {"[A][B]text", "A|B||text"},
        {"no such table: x (1)", "no such table: x (1)|||"},
        // Only leading "[" are removed; a "]" inside the description stays.
        {"[[X][Y][Z]see a[1] here", "X|Y|Z|see a[1] here"},
        // Pieces are cut at 299 characters, the "[" among them.
        {"[" + std::string(400, 'v') + "][C]rest", std::string(298, 'v') + "|C||rest"},
    };
    for (const auto &c : cases) {
        DiagnosticFields f;
        SplitDiagnosticMessage(c.message.c_str(), f);
        EXPECT_EQ(f.vendor + "|" + f.component + "|" + f.dataSource + "|" + f.description, c.fields) << c.message;
    }
}

TEST(Tolerance, ListsWithoutAHandle) {
    const struct {
        const char *list;
        SQLRETURN rc;
        int tolerated;
    } cases[] = {{nullptr, SQL_ERROR, 0}, {"", SQL_ERROR, 0},       {" \t\x01 ", SQL_ERROR, 0},
                 {"*", SQL_ERROR, 1},     {" *", SQL_ERROR, 0},     {"01004,NOINFO", SQL_SUCCESS_WITH_INFO, 1},
                 {"noinfo", SQL_SUCCESS_WITH_INFO, 0},              {"NOINFO", SQL_ERROR, 0}};
    for (const auto &c : cases)
        EXPECT_EQ(Kodbc_IsLastErrorInList(KODBC_HANDLE_STMT, nullptr, c.list, c.rc), c.tolerated)
            << (c.list ? c.list : "(null)") << " rc " << c.rc;
}

class DiagnosticsTest : public DataSourceTest {
protected:
    // Leaves a statement with a real error on it (a table that does not exist).
    SQLHSTMT FailedStatement() {
        SQLHSTMT stmt = nullptr;
        EXPECT_TRUE(SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, hdbc_, &stmt)));
        SQLRETURN rc = SQLExecDirect(stmt, (SQLCHAR *)kBadStatement, SQL_NTS);
        EXPECT_EQ(rc, SQL_ERROR);
        statements_.push_back(stmt);
        return stmt;
    }
    void TearDown() override {
        for (SQLHSTMT stmt : statements_) SQLFreeHandle(SQL_HANDLE_STMT, stmt);
        DataSourceTest::TearDown();
    }
    static constexpr const char *kBadStatement = "SELECT * FROM kodbc_no_such_table";
    std::vector<SQLHSTMT> statements_;
};

TEST_P(DiagnosticsTest, ErrorCodeToleranceAndDisplayShowTheFirstRecord) {
    SQLHSTMT stmt = FailedStatement();
    GuardedBuffer state(16);
    EXPECT_EQ(Kodbc_GetErrorCode(KODBC_HANDLE_STMT, stmt, state.data(), state.size()), 5);
    const std::string code = state.text();
    EXPECT_EQ(code.size(), 5u);
    EXPECT_EQ(Guarded(3, [&](char *out, int n) { Kodbc_GetErrorCode(KODBC_HANDLE_STMT, stmt, out, n); }),
              code.substr(0, 2));

    // The list's tokens keep their blanks; the state compares without case.
    std::string lower = code;
    for (char &c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const std::pair<std::string, int> lists[] = {{code, 1},           {"22001," + lower, 1}, {"22001, " + code, 0},
                                                 {" " + code, 0},     {"22001,01004", 0},    {"NOINFO", 0}};
    for (const auto &[list, tolerated] : lists)
        EXPECT_EQ(Kodbc_IsLastErrorInList(KODBC_HANDLE_STMT, stmt, list.c_str(), SQL_ERROR), tolerated) << list;

    // Reading the state must not consume the record: the display still finds it.
    EXPECT_EQ(Kodbc_DisplayErrorHstmt(stmt, kBadStatement), 1);
    ASSERT_EQ(messages_.entries().size(), 1u);
    const auto &shown = messages_.entries()[0];
    EXPECT_EQ(shown.sqlState, code);
    EXPECT_EQ(shown.statement, kBadStatement);
    EXPECT_FALSE(shown.hasHint);
    std::string all = shown.vendor + shown.component + shown.dataSource + shown.description;
    EXPECT_NE(all.find("kodbc_no_such_table"), std::string::npos) << all;

    messages_.set_answer(KODBC_ANSWER_CANCEL);
    EXPECT_EQ(OdbcEh_HandleErrorHstmt(nullptr, stmt, nullptr), 2);
    EXPECT_EQ(messages_.entries().back().statement, "");
}

TEST_P(DiagnosticsTest, WarningsAreShownOnlyWithTheDumpBit) {
    SQLHSTMT stmt = FailedStatement();
    SetDumpState(0);
    EXPECT_EQ(Kodbc_DisplayErrorOrInfoHstmt(stmt, SQL_SUCCESS_WITH_INFO, "UPDATE x"), 1);
    EXPECT_TRUE(messages_.entries().empty());

    SetDumpState(KORVEL_DUMP_WARNINGS);
    messages_.set_answer(KODBC_ANSWER_CANCEL);
    EXPECT_EQ(Kodbc_DisplayErrorOrInfoHstmt(stmt, SQL_SUCCESS_WITH_INFO, "UPDATE x"), 2);
    EXPECT_EQ(messages_.entries().size(), 1u);
}

TEST_P(DiagnosticsTest, NothingToShowReturnsOne) {
    SQLHSTMT stmt = nullptr;
    ASSERT_TRUE(SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, hdbc_, &stmt)));
    statements_.push_back(stmt);
    EXPECT_EQ(Kodbc_DisplayErrorHstmt(stmt, "SELECT 1"), 1);
    EXPECT_EQ(Kodbc_DisplayErrorHdbc(nullptr), 1);
    EXPECT_TRUE(messages_.entries().empty());
    char state[8] = "xxxxxxx";
    Kodbc_GetErrorCode(KODBC_HANDLE_STMT, stmt, state, sizeof state);
    EXPECT_STREQ(state, "");
}

KODBC_DATA_SOURCE_TEST_SUITE(DiagnosticsTest);

} // namespace
} // namespace kodbc::test
