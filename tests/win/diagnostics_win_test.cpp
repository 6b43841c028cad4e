// Dialog 10025 as the user meets it: a failed statement on the SQLite data
// source, shown by the library and read back by the robot. How a driver's
// message is split, and when nothing is shown, is the core's
// (tests/native/frame_test.cpp).
#include "robot.h"

#include "frame/diagnostics_dialog_ids.h"

#include <string>

namespace {

using namespace wintest;

constexpr char kBadStatement[] = "SELECT * FROM kodbc_missing_table";

class DiagnosticsDialog : public ConnectedTest {
protected:
    void TearDown() override {
        if (hstmt_) SQLFreeStmt(hstmt_, SQL_DROP);
        ConnectedTest::TearDown();
    }
    SQLHSTMT hstmt_ = nullptr;
};

// "Schließen" ends it with 1, Escape with 2; a null statement leaves its field empty.
TEST_F(DiagnosticsDialog, ShowsTheSplitMessageAndEndsWithTheButtonOrEscape) {
    ASSERT_EQ(SQLAllocStmt(hdbc_, &hstmt_), SQL_SUCCESS);
    const struct {
        const char *statement;
        bool escape;
        int result;
        const char *shot;
    } cases[] = {{kBadStatement, false, 1, "diagnostics-10025"}, {nullptr, true, 2, ""}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.result);
        ASSERT_EQ(SQLExecDirect(hstmt_, reinterpret_cast<SQLCHAR *>(const_cast<char *>(kBadStatement)), SQL_NTS),
                  SQL_ERROR);
        std::string fields, state;
        bool hintVisible = true;
        DialogRobot robot(kErrorTitle, c.shot, [&](HWND dialog) {
            for (int id : {IDC_ODBC_ERROR_STATEMENT, IDC_ODBC_ERROR_VENDOR, IDC_ODBC_ERROR_COMPONENT,
                           IDC_ODBC_ERROR_DATASOURCE, IDC_ODBC_ERROR_DESCRIPTION, IDC_ODBC_ERROR_CLOSE,
                           IDC_ODBC_ERROR_HINT})
                fields += ControlText(dialog, id) + "|";
            state = ControlText(dialog, IDC_ODBC_ERROR_STATE);
            hintVisible = ControlVisible(dialog, IDC_ODBC_ERROR_HINT);
            if (c.escape) PressKey(GetDlgItem(dialog, IDC_ODBC_ERROR_CLOSE), VK_ESCAPE);
            else Click(dialog, IDC_ODBC_ERROR_CLOSE);
        });
        EXPECT_EQ(Kodbc_DisplayErrorHstmt(hstmt_, c.statement), c.result);
        robot.Join();

        ASSERT_TRUE(robot.Found()) << "dialog 10025 never appeared";
        // The driver writes "[SQLite]no such table: ... (1)": one bracket, so
        // the rest is the component and nothing is left for the description.
        EXPECT_EQ(fields, std::string(c.statement ? c.statement : "") +
                              "|SQLite|no such table: kodbc_missing_table (1)|||&Schlie\xDF" "en|"
                              "M\xF6gliche Fehlerursache|");
        EXPECT_TRUE(state == "HY000" || state == "S1000") << "SQLSTATE " << state;
        EXPECT_FALSE(hintVisible) << "no hint for this SQLSTATE";
    }
}

} // namespace
