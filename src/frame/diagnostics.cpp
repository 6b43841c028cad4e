// ODBC diagnostics: reading, splitting, display entry points and the
// tolerance test. No error state is kept: every answer comes from the
// driver's diagnostic record 1 at the time of the call.
#include "internal/diagnostics.h"
#include "internal/library.h"
#include "internal/odbc_call.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_diag.h>

#include <strings.h>

namespace kodbc {
namespace {

constexpr std::size_t kPieceLimit = 299;
constexpr SQLSMALLINT kMessageLimit = 2999;

// One bracketed piece: up to the next "]" (or the end), cursor past it.
std::string TakePiece(std::string_view &rest) {
    std::size_t close = rest.find(']');
    std::string_view piece = rest.substr(0, close);
    rest.remove_prefix(close == std::string_view::npos ? rest.size() : close + 1);
    piece = piece.substr(0, kPieceLimit);
    while (!piece.empty() && piece.front() == '[') piece.remove_prefix(1);
    return std::string(piece);
}

} // namespace

void SplitDiagnosticMessage(std::string_view message, DiagnosticFields &fields) {
    std::string_view rest = message;
    fields.vendor = TakePiece(rest);
    fields.component = TakePiece(rest);
    fields.dataSource = rest.find(']') != std::string_view::npos ? TakePiece(rest) : std::string();
    fields.description = std::string(rest);
}

bool ReadDiagnostic(const ErrorDisplayRequest &request, DiagnosticFields &fields) {
    if (!request.handle) return false;
    SQLCHAR state[6] = {};
    SQLINTEGER native = 0;
    SQLCHAR text[kMessageLimit + 1] = {};
    SQLSMALLINT length = 0;
    SQLRETURN rc = KODBC_SQL(SQLGetDiagRec, static_cast<SQLSMALLINT>(request.handleType), request.handle,
                             static_cast<SQLSMALLINT>(request.recordNumber), state, &native, text,
                             kMessageLimit, &length);
    if (!odbc::succeeded(rc)) return false;
    fields.sqlState = reinterpret_cast<const char *>(state);
    SplitDiagnosticMessage(reinterpret_cast<const char *>(text), fields);
    fields.hintMessageId = strcasecmp(fields.sqlState.c_str(), "01S02") == 0 ? msg::HINT_READ_ONLY : 0;
    return true;
}

int DisplayOdbcError(int16_t handleType, SQLHANDLE handle, SQLRETURN retcode, const char *statement) {
    if (retcode == SQL_SUCCESS_WITH_INFO && !(Korvel_GetDumpState(0) & KORVEL_DUMP_WARNINGS)) return 1;
    ErrorDisplayRequest request{handleType, handle, statement, 1, 0};
    return ShowDiagnosticsDialog(request) == 1 ? 1 : 2;
}

} // namespace kodbc

using namespace kodbc;

extern "C" {

KODBC_API int KODBC_CALL Kodbc_DisplayErrorHenv(SQLHENV henv) {
    return DisplayOdbcError(KODBC_HANDLE_ENV, henv, SQL_ERROR, nullptr);
}
KODBC_API int KODBC_CALL Kodbc_DisplayErrorHdbc(SQLHDBC hdbc) {
    return DisplayOdbcError(KODBC_HANDLE_DBC, hdbc, SQL_ERROR, nullptr);
}
KODBC_API int KODBC_CALL Kodbc_DisplayErrorHstmt(SQLHSTMT hstmt, const char *statement) {
    return DisplayOdbcError(KODBC_HANDLE_STMT, hstmt, SQL_ERROR, statement);
}
KODBC_API int KODBC_CALL Kodbc_DisplayErrorOrInfoHstmt(SQLHSTMT hstmt, short retcode, const char *statement) {
    return DisplayOdbcError(KODBC_HANDLE_STMT, hstmt, retcode, statement);
}
KODBC_API int KODBC_CALL OdbcEh_HandleErrorHenv(HWND, SQLHENV henv) { return Kodbc_DisplayErrorHenv(henv); }
KODBC_API int KODBC_CALL OdbcEh_HandleErrorHdbc(HWND, SQLHDBC hdbc) { return Kodbc_DisplayErrorHdbc(hdbc); }
KODBC_API int KODBC_CALL OdbcEh_HandleErrorHstmt(HWND, SQLHSTMT hstmt, const char *statement) {
    return Kodbc_DisplayErrorHstmt(hstmt, statement);
}

KODBC_API int KODBC_CALL Kodbc_GetErrorCode(short handleType, SQLHANDLE handle, char *buffer, int size) {
    SQLCHAR state[6] = {};
    if (handle) {
        SQLINTEGER native = 0;
        SQLSMALLINT length = 0;
        SQLRETURN rc = KODBC_SQL(SQLGetDiagRec, static_cast<SQLSMALLINT>(handleType), handle,
                                 static_cast<SQLSMALLINT>(1), state, &native, static_cast<SQLCHAR *>(nullptr),
                                 static_cast<SQLSMALLINT>(0), &length);
        if (!odbc::succeeded(rc)) state[0] = '\0';
    }
    return KorvelCopyString(buffer, reinterpret_cast<const char *>(state), size);
}

KODBC_API int KODBC_CALL Kodbc_IsLastErrorInList(short handleType, SQLHANDLE handle, const char *list,
                                                 short retcode) {
    if (!list) return 0;
    bool blank = true;
    for (const char *p = list; *p; ++p) {
        if (static_cast<unsigned char>(*p) > 32) { blank = false; break; }
    }
    if (blank) return 0;
    std::string_view tokens(list);
    if (tokens == "*") return 1;
    if (retcode == SQL_SUCCESS_WITH_INFO && tokens.find("NOINFO") != std::string_view::npos) return 1;

    char state[100];
    Kodbc_GetErrorCode(handleType, handle, state, sizeof state);
    while (true) {
        std::size_t comma = tokens.find(',');
        std::string_view token = tokens.substr(0, comma).substr(0, 99);
        if (token.size() == std::strlen(state) && strncasecmp(token.data(), state, token.size()) == 0) return 1;
        if (comma == std::string_view::npos) return 0;
        tokens.remove_prefix(comma + 1);
    }
}

} // extern "C"
