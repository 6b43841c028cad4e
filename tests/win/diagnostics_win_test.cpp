// Dialog 10025 as the user meets it: a failed statement on the SQLite data
// source, each piece of the driver's message in its field. How the message
// is split, and when nothing is shown, is the core's (tests/native/frame_test.cpp).
#include "robot.h"

#include "frame/diagnostics_dialog_ids.h"

#include <string>

namespace {

using namespace wintest;

constexpr char kBadStatement[] = "SELECT * FROM kodbc_missing_table";

using DiagnosticsDialog = ConnectedTest;

// "Schließen" ends it with 1, Escape with 2; a null statement leaves its field empty.
TEST_F(DiagnosticsDialog, ShowsTheSplitMessageAndEndsWithTheButtonOrEscape) {
    for (const char *statement : {kBadStatement, static_cast<const char *>(nullptr)}) {
        SCOPED_TRACE(statement ? statement : "(null)");
        SQLHSTMT stmt = nullptr;
        ASSERT_EQ(SQLAllocStmt(hdbc_, &stmt), SQL_SUCCESS);
        ASSERT_EQ(SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(kBadStatement)), SQL_NTS),
                  SQL_ERROR);
        std::string fields, state;
        bool hintVisible = true;
        DialogRobot robot(kErrorTitle, statement ? "diagnostics-10025" : "", [&](HWND dialog) {
            for (int id : {IDC_ODBC_ERROR_STATEMENT, IDC_ODBC_ERROR_VENDOR, IDC_ODBC_ERROR_COMPONENT,
                           IDC_ODBC_ERROR_DATASOURCE, IDC_ODBC_ERROR_DESCRIPTION, IDC_ODBC_ERROR_CLOSE,
                           IDC_ODBC_ERROR_HINT})
                fields += ControlText(dialog, id) + "|";
            state = ControlText(dialog, IDC_ODBC_ERROR_STATE);
            hintVisible = ControlVisible(dialog, IDC_ODBC_ERROR_HINT);
            if (statement) Click(dialog, IDC_ODBC_ERROR_CLOSE);
            else PressKey(GetDlgItem(dialog, IDC_ODBC_ERROR_CLOSE), VK_ESCAPE);
        });
        EXPECT_EQ(Kodbc_DisplayErrorHstmt(stmt, statement), statement ? 1 : 2);
        robot.Join();
        SQLFreeStmt(stmt, SQL_DROP);

        // "[SQLite]no such table: ... (1)": one bracket, so the rest is the
        // component and nothing is left for the description.
        EXPECT_EQ(fields, std::string(statement ? statement : "") +
                              "|SQLite|no such table: kodbc_missing_table (1)|||&Schlie\xDF" "en|"
                              "M\xF6gliche Fehlerursache|");
        EXPECT_TRUE(state == "HY000" || state == "S1000") << "SQLSTATE " << state;
        EXPECT_FALSE(hintVisible) << "no hint for this SQLSTATE";
    }
}

} // namespace
