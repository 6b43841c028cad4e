// Result sets into the caller's list views and list or combo boxes.
#include "internal/text.h"
#include "internal/execution.h"
#include "internal/library.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_exec.h>

#include <commctrl.h>

#include <cstdlib>
#include <cstring>

namespace kodbc {
namespace {


constexpr SQLLEN kListValueSize = 4999;
constexpr SQLLEN kBoxValueSize = 999;

// Shows the hourglass while a fill runs and puts the caller's cursor back.
class WaitCursor {
public:
    WaitCursor() : previous_(SetCursor(LoadCursor(nullptr, IDC_WAIT))) {}
    ~WaitCursor() { SetCursor(previous_); }
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;

private:
    HCURSOR previous_;
};

// Reads one column as text (NULL as empty). False after a driver error.
bool ReadText(SQLHSTMT statement, SQLUSMALLINT column, char *buffer, SQLLEN size, SQLRETURN &rc,
              bool *isNull = nullptr) {
    SQLLEN indicator = 0;
    rc = KODBC_SQL(SQLGetData, statement, column, static_cast<SQLSMALLINT>(SQL_C_CHAR),
                   static_cast<SQLPOINTER>(buffer), size, &indicator);
    bool null = rc == SQL_NO_DATA || indicator == SQL_NULL_DATA;
    if (isNull) *isNull = null;
    if (!odbc::succeeded(rc) && rc != SQL_NO_DATA) return false;
    if (null) buffer[0] = '\0';
    buffer[size - 1] = '\0';
    return true;
}

// The item data that stands for a text: a copy on the process heap, which
// the caller can free whatever runtime it was built with.
LPARAM TextItemData(const char *text) {
    std::size_t n = std::strlen(text) + 1;
    void *copy = HeapAlloc(GetProcessHeap(), 0, n);
    if (!copy) return 0;
    std::memcpy(copy, text, n);
    return reinterpret_cast<LPARAM>(copy);
}

LPARAM NumberItemData(const char *text) { return static_cast<LPARAM>(std::strtol(text, nullptr, 10)); }

// The common start and the column count; false when the fill cannot begin.
bool StartFill(SQLHDBC hdbc, const char *sql, const char *tolerated, odbc::Statement &statement, SQLLEN &columns) {
    if (!PrepareStatement(hdbc, sql, statement)) return false;
    if (ExecuteStatement(statement, sql, tolerated) != ExecOutcome::Executed) return false;
    columns = 0;
    SQLRETURN rc = KODBC_SQL(SQLColAttribute, statement.get(), static_cast<SQLUSMALLINT>(1),
                             static_cast<SQLUSMALLINT>(SQL_DESC_COUNT), static_cast<SQLPOINTER>(nullptr),
                             static_cast<SQLSMALLINT>(0), static_cast<SQLSMALLINT *>(nullptr), &columns);
    if (!odbc::succeeded(rc)) {
        ReportStatementError(statement, rc, sql, tolerated);
        return false;
    }
    return true;
}

} // namespace
} // namespace kodbc

using namespace kodbc;

extern "C" {

KODBC_API int KODBC_CALL OdbcEh_SelectRowSetToListView(HWND, SQLHDBC hdbc, const char *sql, HWND listView,
                                                       const char *tolerated, unsigned flags) {
    if (!listView || !hdbc || IsBlank(sql)) return KODBC_FAILURE;
    odbc::Statement statement;
    SQLLEN columns = 0;
    if (!StartFill(hdbc, sql, tolerated, statement, columns)) return KODBC_FAILURE;

    SendMessageA(listView, LVM_DELETEALLITEMS, 0, 0);
    WaitCursor wait;
    const bool dataFromFirst = flags & (KODBC_ROWSET_ITEMDATA_NUMBER | KODBC_ROWSET_ITEMDATA_TEXT);
    const SQLUSMALLINT firstShown = dataFromFirst ? 2 : 1;
    char value[kListValueSize];
    // A read error ends the fill: silently when tolerated.
    auto fail = [&](SQLRETURN rc) {
        ReportStatementError(statement, rc, sql, tolerated);
        return KODBC_FAILURE;
    };
    SQLRETURN rc;
    for (int row = 0; odbc::succeeded(rc = KODBC_SQL(SQLFetch, statement.get())); ++row) {
        LPARAM data = 0;
        if (dataFromFirst) {
            if (!ReadText(statement, 1, value, sizeof value, rc)) return fail(rc);
            data = flags & KODBC_ROWSET_ITEMDATA_NUMBER ? NumberItemData(value) : TextItemData(value);
        }
        LVITEMA item = {};
        item.mask = LVIF_TEXT | LVIF_PARAM;
        item.iItem = row;
        item.pszText = const_cast<char *>("");
        item.lParam = data;
        int index = static_cast<int>(SendMessageA(listView, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item)));
        for (SQLUSMALLINT c = firstShown; c <= columns; ++c) {
            if (!ReadText(statement, c, value, sizeof value, rc)) return fail(rc);
            Korvel_ListView_SetItemText(listView, index, c - firstShown, value);
        }
    }
    return rc == SQL_NO_DATA ? KODBC_SUCCESS : fail(rc);
}

KODBC_API int KODBC_CALL OdbcEh_SelectRowSetToBox(HWND, SQLHDBC hdbc, const char *sql, HWND box,
                                                  const char *tolerated, unsigned flags) {
    if (!box || !hdbc || IsBlank(sql)) return KODBC_FAILURE;
    odbc::Statement statement;
    SQLLEN columns = 0;
    if (!StartFill(hdbc, sql, tolerated, statement, columns)) return KODBC_FAILURE;

    Korvel_ResetBox(box);
    WaitCursor wait;
    char text[kBoxValueSize];
    char second[kBoxValueSize];
    auto fail = [&](SQLRETURN rc) {
        ReportStatementError(statement, rc, sql, tolerated);
        return KODBC_FAILURE;
    };
    SQLRETURN rc;
    while (odbc::succeeded(rc = KODBC_SQL(SQLFetch, statement.get()))) {
        if (!ReadText(statement, 1, text, sizeof text, rc)) return fail(rc);
        LPARAM data = 0;
        if (columns >= 2) {
            bool isNull = false;
            if (!ReadText(statement, 2, second, sizeof second, rc, &isNull)) return fail(rc);
            if (!isNull) data = flags & KODBC_ROWSET_ITEMDATA_TEXT ? TextItemData(second) : NumberItemData(second);
        }
        Korvel_AddBoxEntry(box, text, data, -1, 0);
    }
    return rc == SQL_NO_DATA ? KODBC_SUCCESS : fail(rc);
}

} // extern "C"
