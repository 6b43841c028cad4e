// A small Windows host for the library's dialogs (demonstration and
// screenshots): connects to the data source named on the command line and
// shows the ODBC error display for a statement that must fail.
//   kodbc_host.exe DSN [USER [PASSWORD]]
#include <kodbc/kodbc.h>

#include <windows.h>

#include <stdlib.h>  // __argc, __argv

namespace {

constexpr char kFailingStatement[] = "SELECT * FROM kodbc_host_no_such_table";

void CopyField(char *field, int size, const char *value) {
    if (value) lstrcpynA(field, value, size);
}

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    DataSourceRecord record = {};
    if (__argc > 1) CopyField(record.DataSourceName, sizeof record.DataSourceName, __argv[1]);
    if (__argc > 2) CopyField(record.UserId, sizeof record.UserId, __argv[2]);
    if (__argc > 3) CopyField(record.Password, sizeof record.Password, __argv[3]);

    SQLHENV henv = nullptr;
    SQLHDBC hdbc = nullptr;
    // An empty name is the library's own message; a bad one its error display.
    if (Kodbc_ConnectDataSource(&record, &henv, &hdbc) != 0) return 1;

    SQLHSTMT hstmt = nullptr;
    int result = 0;
    if (SQLAllocStmt(hdbc, &hstmt) == SQL_SUCCESS) {
        SQLRETURN rc = SQLExecDirect(hstmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(kFailingStatement)),
                                     SQL_NTS);
        if (!SQL_SUCCEEDED(rc)) result = Kodbc_DisplayErrorHstmt(hstmt, kFailingStatement);
        SQLFreeStmt(hstmt, SQL_DROP);
    }
    Kodbc_DisconnectDataSource(&henv, &hdbc);
    return result == KODBC_DIALOG_OK ? 0 : 2;
}
