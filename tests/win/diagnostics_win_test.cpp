// Dialog 10025 as the user meets it: a failed statement on the SQLite data
// source, shown by the library and read back by the robot.
#include "robot.h"

#include "frame/diagnostics_dialog_ids.h"
#include "win_support.h"

#include <string>

namespace {

using wintest::ControlText;
using wintest::ControlVisible;
using wintest::DialogRobot;
using wintest::kErrorTitle;

constexpr char kBadStatement[] = "SELECT * FROM kodbc_missing_table";

struct Fields {
    std::string statement, description, state, vendor, component, dataSource, close, hint;
    bool hintVisible = true;
};

Fields ReadFields(HWND dialog) {
    Fields f;
    f.statement = ControlText(dialog, IDC_ODBC_ERROR_STATEMENT);
    f.description = ControlText(dialog, IDC_ODBC_ERROR_DESCRIPTION);
    f.state = ControlText(dialog, IDC_ODBC_ERROR_STATE);
    f.vendor = ControlText(dialog, IDC_ODBC_ERROR_VENDOR);
    f.component = ControlText(dialog, IDC_ODBC_ERROR_COMPONENT);
    f.dataSource = ControlText(dialog, IDC_ODBC_ERROR_DATASOURCE);
    f.close = ControlText(dialog, IDC_ODBC_ERROR_CLOSE);
    f.hint = ControlText(dialog, IDC_ODBC_ERROR_HINT);
    f.hintVisible = ControlVisible(dialog, IDC_ODBC_ERROR_HINT);
    return f;
}

class DiagnosticsDialog : public wintest::ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        if (!HasFatalFailure()) {
            ASSERT_EQ(SQLAllocStmt(hdbc_, &hstmt_), SQL_SUCCESS);
        }
    }
    void TearDown() override {
        if (hstmt_) SQLFreeStmt(hstmt_, SQL_DROP);
        ConnectedTest::TearDown();
    }
    void FailStatement() {
        ASSERT_EQ(SQLExecDirect(hstmt_, reinterpret_cast<SQLCHAR *>(const_cast<char *>(kBadStatement)), SQL_NTS),
                  SQL_ERROR);
    }

    SQLHSTMT hstmt_ = nullptr;
};

TEST_F(DiagnosticsDialog, ShowsTheSplitMessageAndClosesWithOne) {
    FailStatement();
    Fields fields;
    DialogRobot robot(kErrorTitle, "diagnostics-10025", [&](HWND dialog) {
        fields = ReadFields(dialog);
        wintest::Click(dialog, IDC_ODBC_ERROR_CLOSE);
    });
    int result = Kodbc_DisplayErrorHstmt(hstmt_, kBadStatement);
    robot.Join();

    ASSERT_TRUE(robot.Found()) << "dialog 10025 never appeared";
    EXPECT_EQ(result, 1);
    EXPECT_EQ(fields.statement, kBadStatement);
    // The driver writes "[SQLite]no such table: ... (1)": one bracket, so
    // the rest is the component and nothing is left for the description.
    EXPECT_EQ(fields.vendor, "SQLite");
    EXPECT_EQ(fields.component, "no such table: kodbc_missing_table (1)");
    EXPECT_EQ(fields.dataSource, "");
    EXPECT_EQ(fields.description, "");
    EXPECT_TRUE(fields.state == "HY000" || fields.state == "S1000") << "SQLSTATE " << fields.state;
    EXPECT_EQ(fields.close, "&Schlie\xDF" "en");
    EXPECT_EQ(fields.hint, "M\xF6gliche Fehlerursache");
    EXPECT_FALSE(fields.hintVisible) << "no hint for this SQLSTATE";
}

// Escape cancels; a null statement shows an empty field. That nothing is
// shown without a diagnostic record, or for a warning while the dump bit is
// clear, is the core's (tests/native/diagnostics_test.cpp).
TEST_F(DiagnosticsDialog, NullStatementShowsAnEmptyFieldAndEscapeCancelsWithTwo) {
    FailStatement();
    std::string statement = "unread";
    DialogRobot robot(kErrorTitle, "", [&](HWND dialog) {
        statement = ControlText(dialog, IDC_ODBC_ERROR_STATEMENT);
        wintest::PressEscape(dialog, IDC_ODBC_ERROR_CLOSE);
    });
    EXPECT_EQ(Kodbc_DisplayErrorHstmt(hstmt_, nullptr), 2);
    robot.Join();
    ASSERT_TRUE(robot.Found());
    EXPECT_EQ(statement, "");
}

} // namespace
